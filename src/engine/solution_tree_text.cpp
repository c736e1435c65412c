#include "engine/solution_tree_text.h"

#include "core/localized_text.h"
#include "core/move.h"
#include "core/piece.h"
#include "engine/solve_texts.h"
#include "problems/text_encoding.h"

#include <cstdio>

namespace zorvane {

namespace {

constexpr int INDENT_PER_MOVE = 3;

const LocalizedText BUT_TEXT{L"ale", L"but", L"але"};
const LocalizedText ZUGZWANG_TEXT{L"zugzwang", L"zugzwang", L"цугцванг"};
const LocalizedText SET_PLAY_TEXT{L"gra pozorna:", L"set play:", L"позірна гра:"};
const LocalizedText DUAL_TEXT{L" (dual)", L" (dual)", L" (дуаль)"};
const LocalizedText SHORT_MATE_TEXT{L" (krótszy mat)", L" (short mate)", L" (коротший мат)"};

std::string letterOf(uint8_t figure, int languageId) {
    switch (figure & KIND_MASK) {
    case KIND_KING:
        return WideToUtf8(LocalizedText{L"K", L"K", L"Кр"}.In(languageId));
    case KIND_QUEEN:
        return WideToUtf8(LocalizedText{L"H", L"Q", L"Ф"}.In(languageId));
    case KIND_ROOK:
        return WideToUtf8(LocalizedText{L"W", L"R", L"Т"}.In(languageId));
    case KIND_BISHOP:
        return WideToUtf8(LocalizedText{L"G", L"B", L"С"}.In(languageId));
    case KIND_KNIGHT:
        return WideToUtf8(LocalizedText{L"S", L"N", L"К"}.In(languageId));
    default:
        return "";
    }
}

std::string text(const LocalizedText& localized, int languageId) {
    return WideToUtf8(localized.In(languageId));
}

class TreeWriter {
  public:
    explicit TreeWriter(int languageId) : m_language(languageId) {}

    std::string write(const SolutionTree& tree) {
        for (const WhitePlay& key : tree.keys) {
            addWhite(1, key.move);
            m_out += '!';
            addThreat(key, 1);
            m_out += '\n';
            writeDefenceList(key.defences, key.threat, 1);
        }
        for (const WhitePlay& attempt : tree.tries) {
            addWhite(1, attempt.move);
            m_out += "? ";
            m_out += text(BUT_TEXT, m_language);
            for (const BlackDefence& refutation : attempt.defences) {
                m_out += ' ';
                addBlack(1, refutation.move);
                m_out += '!';
            }
            m_out += '\n';
        }
        if (!tree.setPlay.empty()) {
            m_out += text(SET_PLAY_TEXT, m_language);
            m_out += '\n';
            writeDefenceList(tree.setPlay, {}, 1);
        }
        if (tree.stopped) {
            m_out += WideToUtf8(AnalysisStoppedText(m_language));
            m_out += '\n';
        }
        return m_out;
    }

  private:
    // "2.Qg7-b7#": White's move number `number`.
    void addWhite(int number, const TreeMove& move) {
        m_out += std::to_string(number);
        m_out += '.';
        m_out += TreeMoveText(move, m_language);
    }
    // "1...Kb8-c8": Black's.
    void addBlack(int number, const TreeMove& move) {
        m_out += std::to_string(number);
        m_out += "...";
        m_out += TreeMoveText(move, m_language);
    }

    // Behind White's move number `number`: " (2.Qg7-b7#)", " (zugzwang)", or
    // nothing after a check or below the full tree.
    void addThreat(const WhitePlay& play, int number) {
        if (play.zugzwang) {
            m_out += " (";
            m_out += text(ZUGZWANG_TEXT, m_language);
            m_out += ')';
            return;
        }
        if (play.threat.empty()) return;
        m_out += " (";
        for (size_t i = 0; i < play.threat.size(); ++i) {
            if (i) m_out += ' ';
            addWhite(number + 1, play.threat[i]);
        }
        m_out += ')';
    }

    // The replies of Black's move number `number`: each real defence with
    // its lines, then the moves that allow the threat, grouped by the
    // threat move that answers them.
    void writeDefenceList(const std::vector<BlackDefence>& defences, const std::vector<TreeMove>& threat,
                          int number) {
        const std::string indent(INDENT_PER_MOVE * number, ' ');
        for (const BlackDefence& defence : defences) {
            if (defence.allowsThreat) continue;
            if (defence.replies.empty()) {
                m_out += indent;
                addBlack(number, defence.move);
                m_out += '\n';
            }
            for (const WhitePlay& reply : defence.replies) {
                m_out += indent;
                addBlack(number, defence.move);
                m_out += ' ';
                addWhite(number + 1, reply.move);
                addThreat(reply, number + 1);
                if (defence.replies.size() > 1) m_out += text(DUAL_TEXT, m_language);
                if (reply.shortMate) m_out += text(SHORT_MATE_TEXT, m_language);
                m_out += '\n';
                writeDefenceList(reply.defences, reply.threat, number + 1);
            }
        }
        std::vector<bool> written(defences.size(), false);
        for (size_t i = 0; i < defences.size(); ++i) {
            const TreeMove* answer = threatAnswer(defences[i], threat);
            if (!defences[i].allowsThreat || written[i] || !answer) continue;
            m_out += indent;
            m_out += std::to_string(number);
            m_out += "...";
            for (size_t j = i; j < defences.size(); ++j) {
                const TreeMove* other = threatAnswer(defences[j], threat);
                if (!defences[j].allowsThreat || written[j] || !other || !(other->move == answer->move))
                    continue;
                if (j != i) m_out += ", ";
                m_out += TreeMoveText(defences[j].move, m_language);
                written[j] = true;
            }
            m_out += ' ';
            addWhite(number + 1, *answer);
            m_out += '\n';
        }
    }

    // The first of White's answers to `defence` that is a threat move.
    static const TreeMove* threatAnswer(const BlackDefence& defence, const std::vector<TreeMove>& threat) {
        for (const WhitePlay& reply : defence.replies)
            for (const TreeMove& move : threat)
                if (reply.move.move == move.move) return &reply.move;
        return nullptr;
    }

    int m_language;
    std::string m_out;
};

} // namespace

std::string TreeMoveText(const TreeMove& shown, int languageId) {
    const TMove& move = shown.move;
    std::string out = FormatMove(move, shown.figure, shown.capture);
    // The long notation's rules stand; only the English letters give way to the language's.
    if (languageId != LANGUAGE_ENGLISH && out.size() > 2 && out[0] != '0') {
        if (move.promotionKind() != 0)
            out = out.substr(0, out.size() - 1) + letterOf(move.promotionKind(), languageId);
        else if ((shown.figure & KIND_MASK) != KIND_PAWN)
            out = letterOf(shown.figure, languageId) + out.substr(1);
    }
    if (shown.mate) return out + "#";
    return shown.check ? out + "+" : out;
}

std::string SolutionTreeText(const SolutionTree& tree, int languageId) {
    return TreeWriter(languageId).write(tree);
}

} // namespace zorvane
