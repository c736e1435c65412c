#pragma once
// What OK in the Options dialog decides, free of any window toolkit: the
// checks of the typed fields in their order, and the notes that follow when
// the values are taken over. The dialog shows `messages` in order and, when
// refused, puts every control back to the values it opened with.
#include "options/localized_text.h"
#include "options/options.h"

#include <string>
#include <vector>

namespace zorvane {

inline constexpr int MAX_MEMORY_RATIO = 100;
inline constexpr int MAX_SCHEDULER_LEVELS = 9;
inline constexpr int MIN_LICHESS_LEVELS = -1;
inline constexpr int MAX_LICHESS_LEVELS = 255;
inline constexpr int MAX_THREADS = 64;
inline constexpr int MAX_MULTITHREADING_LEVELS = 64;
// threads ^ levels must stay below this.
inline constexpr int THREAD_TREE_LIMIT = 32767;

struct OptionsDialogEntry {
    // Radio buttons and check boxes as the user left them; the members behind
    // the edit fields are ignored.
    Options choices;
    // The edit fields as typed.
    std::string precalcRatio;
    std::string tempRegRatio;
    std::string schedulerLevels; // the value in use, as the dialog shows it
    std::string observerLevels;
    std::string lichessLevels;
    std::string threads;
    std::string multithreadingLevels;
};

struct OptionsDialogOutcome {
    bool accepted = false;
    // In the order they appear; when refused, the last one says why.
    std::vector<DialogMessage> messages;
    // In force when accepted.
    Options options;
    int threads = 1;
};

// `before` holds the values the dialog opened with.
//  1, 2. memory ratios: numbers from 0 to 100;
//  3. scheduler levels: 0 to 9;
//  4. remote tablebase levels: -1 to 255;
//  5. threads held to 1..64 silently; one thread means one level, else the
//     levels are held to 0..64 (a text that is no number counts as 0), with a
//     note when that changed them;
//  6. threads ^ levels below 32767.
// The observer levels have no check: a text that is no number counts as 0,
// and the value is held to 0..65535.
OptionsDialogOutcome CheckOptionsDialog(const Options& before, const OptionsDialogEntry& entry);

} // namespace zorvane
