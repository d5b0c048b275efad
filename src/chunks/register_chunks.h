// Which classes stand for which chunks, all in one place and in order.
#pragma once

// Registers the containers and every picture chunk. Called once, before the first load.
void RegisterChunks();
