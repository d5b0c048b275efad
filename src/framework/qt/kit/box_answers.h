// The program's questions as boxes and dialogs in front of its windows.
#pragma once

class Answers;

Answers& AfxGetBoxAnswers();
