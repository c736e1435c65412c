#include "cli/tree_json.h"

#include "cli/json_text.h"
#include "core/localized_text.h"
#include "engine/solution_tree_text.h"

namespace zorvane::cli {

namespace {

std::string moveText(const TreeMove& move) {
    // The mark has a field of its own: the move text carries none.
    TreeMove plain = move;
    plain.check = plain.mate = false;
    return JsonText(TreeMoveText(plain, LANGUAGE_ENGLISH));
}

std::string markOf(const TreeMove& move) {
    return move.mate ? "#" : move.check ? "+" : "";
}

// "[a,b,...]" of the items, each written by `write`.
template <class Items, class Write> std::string jsonArray(const Items& items, Write write) {
    std::string out = "[";
    for (const auto& item : items) {
        if (out.size() > 1) out += ',';
        out += write(item);
    }
    out += ']';
    return out;
}

const char* flag(bool value) {
    return value ? "true" : "false";
}

std::string blackJson(const BlackDefence& defence);

std::string whiteJson(const WhitePlay& play, const std::string& mark) {
    std::string out = "{\"move\":";
    out += moveText(play.move);
    out += ",\"mark\":";
    out += JsonText(mark);
    out += ",\"check\":";
    out += flag(play.move.check);
    out += ",\"mateIn\":";
    out += std::to_string(play.mateIn);
    out += ",\"short\":";
    out += flag(play.shortMate);
    out += ",\"threat\":";
    out += jsonArray(play.threat, [](const TreeMove& move) {
        std::string threat = "{\"move\":";
        threat += moveText(move);
        threat += ",\"mark\":";
        threat += JsonText(markOf(move));
        threat += '}';
        return threat;
    });
    out += ",\"zugzwang\":";
    out += flag(play.zugzwang);
    out += ",\"defences\":";
    out += jsonArray(play.defences, blackJson);
    out += '}';
    return out;
}

std::string blackJson(const BlackDefence& defence) {
    std::string out = "{\"move\":";
    out += moveText(defence.move);
    out += ",\"check\":";
    out += flag(defence.move.check);
    out += ",\"refutes\":";
    out += flag(defence.refutes);
    out += ",\"allowsThreat\":";
    out += flag(defence.allowsThreat);
    out += ",\"replies\":";
    out += jsonArray(defence.replies,
                     [](const WhitePlay& reply) { return whiteJson(reply, markOf(reply.move)); });
    out += '}';
    return out;
}

} // namespace

std::string TreeJson(const SolutionTree& tree) {
    std::string out = "[";
    auto add = [&out](const WhitePlay& play, const char* mark) {
        if (out.size() > 1) out += ',';
        out += whiteJson(play, mark);
    };
    for (const WhitePlay& key : tree.keys) add(key, "!");
    for (const WhitePlay& attempt : tree.tries) add(attempt, "?");
    out += ']';
    return out;
}

std::string SetPlayJson(const SolutionTree& tree) {
    return jsonArray(tree.setPlay, blackJson);
}

} // namespace zorvane::cli
