// The program's questions as boxes and dialogs in front of its windows. Once the program is to end, no message
// shows.
#pragma once

class Answers;

Answers& AfxGetBoxAnswers();
