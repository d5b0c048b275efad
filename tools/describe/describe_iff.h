// The structure of an IFF document.
#pragma once

class IffChunk;
class JsonWriter;

void DescribeChunk(JsonWriter& json, const IffChunk& chunk);
