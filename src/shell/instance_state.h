#pragma once
// Program-wide facts about this running copy of the program. Plain C++, so
// that the tablebase cache can ask before it writes.
namespace zorvane {

// Set at start-up when another copy of the program already holds the instance lock.
void SetSecondInstance(bool second);
bool IsSecondInstance();

// A second instance writes no ".lichess" cache files: only the first may own them.
bool MayWriteLichessFiles();

} // namespace zorvane
