// zorvane-cli tables make|list|probe|check: the endgame tables on disk.
#include "cli/commands.h"
#include "cli/fen_option.h"
#include "cli/number_option.h"
#include "cli/table_option.h"
#include "core/chess_exception.h"
#include "global_register/position_index.h"
#include "global_register/position_type.h"
#include "global_register/table_check.h"
#include "global_register/table_file.h"
#include "global_register/table_generator.h"
#include "global_register/table_set.h"
#include "global_register/table_types.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <set>

namespace zorvane::cli {

namespace {

namespace fs = std::filesystem;

// A partial file is written after a level only when this long has passed
// since the last one: each write forces the whole table to disk.
constexpr double PARTIAL_WRITE_SECONDS = 10;
// Faults printed by the check; the rest are counted.
constexpr size_t LISTED_FAULTS = 20;

std::atomic<int> g_stop{0};

extern "C" void stopOnInterrupt(int) {
    g_stop.store(STOP_RUN);
}

struct TablesOptions {
    std::string dir;
    std::vector<std::string> types;
    int all = 0;
    std::string fen;
    std::string type;
    bool partial = false;
    int threads = 0;
};

fs::path baseOf(const TablesOptions& options) {
    return TablesBase(options.dir);
}

// A type text as the user typed it, in its canonical order; empty when it is none.
std::string typeArgument(const std::string& text) {
    const std::string type = CanonicalPosType(text);
    if (type.empty() || TableSize(type, false, false) == 0 || type.find_first_of("Xx") != std::string::npos)
        return "";
    return type;
}

// Loads into `set` every table on disk that `type` may reach: a white move
// and a black reply may each capture or promote.
void loadLesserTables(TTableSet& set, const std::string& type) {
    for (const std::string& lesser : TypesInMakingOrder({type}))
        if (lesser != type) set.Load(lesser);
}

int makeOne(TTableSet& set, const std::string& type, int threads) {
    const fs::path path = TableFilePath(set.Base(), type);
    std::fprintf(stderr, "%s: making %llu cells\n", type.c_str(),
                 static_cast<unsigned long long>(TableSize(type, DefaultTableHeader(type) != 0, false)));
    auto lastWrite = std::chrono::steady_clock::now();
    TGenerationSettings settings;
    settings.pStop = &g_stop;
    settings.nThreads = threads;
    settings.onLevel = [&](const TLevelReport& report, const TRawTable& partial) {
        // The level's pace: the cells it settled, per second.
        const double perSecond =
            report.dSeconds > 0 ? static_cast<double>(report.nNewCells) / report.dSeconds : 0;
        std::fprintf(stderr, "%s: level %d: %llu new, %.2f s, %.0f cells/s\n", type.c_str(), report.nLevel,
                     static_cast<unsigned long long>(report.nNewCells), report.dSeconds, perSecond);
        const auto now = std::chrono::steady_clock::now();
        if (std::chrono::duration<double>(now - lastWrite).count() >= PARTIAL_WRITE_SECONDS) {
            WriteRawTable(path, partial);
            lastWrite = now;
        }
    };
    TGenerationResult result = GenerateTable(type, set.Prober(), settings);
    WriteRawTable(path, result.table);
    const double perSecond =
        result.dSeconds > 0 ? static_cast<double>(result.table.nSize) / result.dSeconds : 0;
    if (result.bStopped) {
        std::printf("%s: stopped after level %d, written to %s\n", type.c_str(), result.nLevels,
                    path.string().c_str());
        return 1;
    }
    std::printf("%s: %llu cells, longest mate %d, %.2f s (first pass %.2f s), %.0f cells/s\n", type.c_str(),
                static_cast<unsigned long long>(result.table.nSize), LongestMate(result.table),
                result.dSeconds, result.dPrepareSeconds, perSecond);
    set.Add(std::move(result.table));
    return 0;
}

int runMake(const TablesOptions& options) {
    std::vector<std::string> requested;
    if (options.all != 0) requested = AllTypesWithWhiteMen(options.all);
    for (const std::string& text : options.types) {
        const std::string type = typeArgument(text);
        if (type.empty()) {
            std::fprintf(stderr, "Not a position type: %s\n", text.c_str());
            return 2;
        }
        if (!TypeHasWhiteMan(type)) {
            std::fprintf(stderr, "%s: White has no man beside his king, so there is no table\n",
                         type.c_str());
            return 2;
        }
        requested.push_back(type);
    }
    if (requested.empty()) {
        std::fprintf(stderr, "Name the types to make, or --all 3 or --all 4\n");
        return 2;
    }
    const std::set<std::string> asked(requested.begin(), requested.end());
    TTableSet set(baseOf(options));
    std::signal(SIGINT, stopOnInterrupt);
    const auto start = std::chrono::steady_clock::now();
    int made = 0;
    try {
        for (const std::string& type : TypesInMakingOrder(requested)) {
            // Lesser tables already on disk are used as they are; the ones asked for are made anew.
            if (!asked.count(type) && set.Load(type)) continue;
            if (makeOne(set, type, options.threads) != 0) return 1;
            ++made;
        }
    } catch (const ChessException& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
    std::printf("%d table(s) made in %.1f s\n", made,
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    return 0;
}

// The type of a file stem: the marks after lower-case letters taken out.
std::string typeOfStem(const std::string& stem) {
    std::string type;
    for (const char c : stem)
        if (c != '_') type += c;
    return type;
}

int runList(const TablesOptions& options) {
    const fs::path base = baseOf(options);
    if (options.type.empty()) {
        std::error_code ec;
        std::set<std::pair<std::string, uintmax_t>> files;
        for (auto it = fs::recursive_directory_iterator(base / TABLE_FOLDER, ec);
             !ec && it != fs::recursive_directory_iterator(); it.increment(ec)) {
            if (it->is_regular_file() && it->path().extension() == TABLE_FILE_EXTENSION)
                files.insert({typeOfStem(it->path().stem().string()), it->file_size()});
        }
        for (const auto& [type, size] : files)
            std::printf("%-8s %12llu bytes\n", type.c_str(), static_cast<unsigned long long>(size));
        std::printf("%zu table file(s) in %s\n", files.size(), (base / TABLE_FOLDER).string().c_str());
        return 0;
    }
    const std::string type = typeArgument(options.type);
    if (type.empty()) {
        std::fprintf(stderr, "Not a position type: %s\n", options.type.c_str());
        return 2;
    }
    std::vector<std::string> missing;
    for (const std::string& needed : TypesInMakingOrder({type})) {
        const fs::path path = FindTableFile(base, needed);
        std::error_code ec;
        if (path.empty()) {
            std::printf("%-8s missing\n", needed.c_str());
            missing.push_back(needed);
        } else {
            std::printf("%-8s %12llu bytes\n", needed.c_str(),
                        static_cast<unsigned long long>(fs::file_size(path, ec)));
        }
    }
    if (missing.empty()) {
        std::printf("%s: nothing missing\n", type.c_str());
    } else {
        std::printf("%s: missing", type.c_str());
        for (const std::string& t : missing) std::printf(" %s", t.c_str());
        std::printf("\n");
    }
    return 0;
}

int runProbe(const TablesOptions& options) {
    const std::optional<FenPosition> read = ReadFenOption(options.fen, 1);
    if (!read) return 2;
    const TChessboard& board = read->board;
    const std::string type = PosTypeText(board);
    if (board.whiteMenBesideKing() == 0) {
        std::printf("no mate\n");
        return 0;
    }
    TTableSet set(baseOf(options));
    try {
        if (!set.Load(type)) {
            std::printf("no table covers %s\n", type.c_str());
            return 1;
        }
    } catch (const ChessException& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
    const int value = set.Probe(board);
    if (value == PROBE_NOT_AVAILABLE)
        std::printf("%s: not generated yet\n", type.c_str());
    else if (value == 0)
        std::printf("%s: no mate\n", type.c_str());
    else
        std::printf("%s: mate in %d\n", type.c_str(), value);
    return 0;
}

int runCheck(const TablesOptions& options) {
    const std::string type = typeArgument(options.type);
    if (type.empty()) {
        std::fprintf(stderr, "Not a position type: %s\n", options.type.c_str());
        return 2;
    }
    TTableSet set(baseOf(options));
    std::signal(SIGINT, stopOnInterrupt);
    try {
        if (!set.Load(type)) {
            std::fprintf(stderr, "No table for %s in %s\n", type.c_str(), set.Base().string().c_str());
            return 2;
        }
        loadLesserTables(set, type);
        const TRawTable& table = *set.Find(type);
        TCheckSettings settings;
        settings.pStop = &g_stop;
        settings.nThreads = options.threads;
        settings.nMaxListed = LISTED_FAULTS;
        if (options.partial) {
            settings.nLevelLimit = LongestMate(table);
            std::printf("Max. mate in the partially generated file is #%d\n", settings.nLevelLimit);
        }
        const TCheckResult result = CheckTable(table, set.Prober(), settings);
        for (const TTableFault& fault : result.faults)
            std::printf("fault at index %llu: expected %d, found %d\n",
                        static_cast<unsigned long long>(fault.nIndex), fault.nExpected, fault.nFound);
        std::printf("%s: %llu positions, %llu fault(s)%s, %.1f s\n", type.c_str(),
                    static_cast<unsigned long long>(result.nPositions),
                    static_cast<unsigned long long>(result.nFaults), result.bStopped ? ", stopped" : "",
                    result.dSeconds);
        return result.nFaults != 0 || result.bStopped ? 1 : 0;
    } catch (const ChessException& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
}

} // namespace

Runner AddTablesCommand(CLI::App& app) {
    auto options = std::make_shared<TablesOptions>();
    CLI::App* tables = app.add_subcommand("tables", "Make, list, probe and check the endgame tables");
    tables->require_subcommand(1);
    tables->fallthrough();
    tables->add_option("--dir", options->dir,
                       "Base folder of the tables (default: the program's data folder, "
                       "$XDG_DATA_HOME/zorvane or ~/.local/share/zorvane)");
    AddWholeNumber(tables, "--threads", options->threads, 0, 1024, "Threads (0: every logical processor)");

    CLI::App* make = tables->add_subcommand("make", "Make tables, and first the lesser ones they need");
    make->add_option("types", options->types, "Position types, e.g. Q or Qr");
    AddWholeNumber(make, "--all", options->all, 3, 4,
                   "Every type of this many men in all in which White has a man beside his king");
    CLI::App* list =
        tables->add_subcommand("list", "The table files, or what a type needs and what is missing");
    list->add_option("type", options->type, "A position type");
    CLI::App* probe = tables->add_subcommand("probe", "The mate length of a position, White to move");
    probe->add_option("fen", options->fen, "The position as FEN")->required();
    CLI::App* check = tables->add_subcommand("check", "Check every cell of a table against its successors");
    check->add_option("type", options->type, "A position type")->required();
    check->add_flag("--partial", options->partial,
                    "The file is partially made: check it up to its longest mate");

    return [options, make, list, probe, check] {
        if (make->parsed()) return runMake(*options);
        if (list->parsed()) return runList(*options);
        if (probe->parsed()) return runProbe(*options);
        if (check->parsed()) return runCheck(*options);
        return 2;
    };
}

} // namespace zorvane::cli
