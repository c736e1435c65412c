#include "shell/solution_panel.h"

#include "engine/solution_tree_text.h"
#include "engine/solve_texts.h"
#include "problems/notation.h"
#include "shell/board_controller.h"
#include "shell/board_rules.h"
#include "shell/main_window.h"
#include "shell/window_services.h"

#include <QHeaderView>
#include <QPlainTextEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <deque>
#include <optional>

namespace zorvane {

namespace {

constexpr LocalizedText PANEL_TITLE{L"Rozwiązanie", L"Solution", L"Розв'язок"};
constexpr LocalizedText TRIES_HEADING{L"Próby", L"Tries", L"Спроби"};
constexpr LocalizedText SET_PLAY_HEADING{L"Gra pozorna", L"Set play", L"Позірна гра"};
constexpr LocalizedText ZUGZWANG{L"zugzwang", L"zugzwang", L"цугцванг"};
constexpr LocalizedText BUT{L"ale", L"but", L"але"};
constexpr LocalizedText DUAL{L" (dual)", L" (dual)", L" (дуаль)"};
constexpr LocalizedText SHORT_MATE{L" (krótszy mat)", L" (short mate)", L" (коротший мат)"};
// The item's place in the list of the moves of the lines on screen.
constexpr int LINE_ROLE = Qt::UserRole;
constexpr int RESULT_TEXT_LINES = 8;
// Wide enough for a two-mover's key with its threat and most defence lines.
constexpr int PANEL_MIN_WIDTH = 340;

// Builds the lines as the text form writes them, one item a line.
class LineWriter {
  public:
    explicit LineWriter(int languageId) : m_language(languageId) {}

    std::vector<SolutionLine> write(const SolutionTree& tree) {
        std::vector<SolutionLine> out;
        for (const WhitePlay& key : tree.keys) {
            SolutionLine line;
            line.moves = {key.move.move};
            line.text = white(1, key.move) + "!" + threatOf(key, 1);
            line.children = defenceLines(key.defences, key.threat, 1, line.moves);
            out.push_back(std::move(line));
        }
        if (!tree.tries.empty()) {
            SolutionLine heading{Translate(m_language, TRIES_HEADING), {}, {}};
            for (const WhitePlay& attempt : tree.tries) {
                SolutionLine line;
                line.moves = {attempt.move.move};
                line.text = white(1, attempt.move) + "? " + Translate(m_language, BUT);
                for (const BlackDefence& refutation : attempt.defences) {
                    line.text += " " + black(1, refutation.move) + "!";
                    line.children.push_back(
                        {black(1, refutation.move) + "!", {attempt.move.move, refutation.move.move}, {}});
                }
                heading.children.push_back(std::move(line));
            }
            out.push_back(std::move(heading));
        }
        if (!tree.setPlay.empty()) {
            SolutionLine heading{Translate(m_language, SET_PLAY_HEADING), {}, {}};
            heading.children = defenceLines(tree.setPlay, {}, 1, {});
            // Black moves first there, in a position where White is to move: nothing to play.
            forgetMoves(heading.children);
            out.push_back(std::move(heading));
        }
        if (tree.stopped) out.push_back({ToQString(AnalysisStoppedText(m_language)), {}, {}});
        return out;
    }

  private:
    QString move(const TreeMove& shown) const {
        return QString::fromStdString(TreeMoveText(shown, m_language));
    }
    QString white(int number, const TreeMove& shown) const {
        return QString::number(number) + "." + move(shown);
    }
    QString black(int number, const TreeMove& shown) const {
        return QString::number(number) + "..." + move(shown);
    }

    // " (2.Qg7-b7#)", " (zugzwang)", or nothing.
    QString threatOf(const WhitePlay& play, int number) const {
        if (play.zugzwang) return " (" + Translate(m_language, ZUGZWANG) + ")";
        if (play.threat.empty()) return QString();
        QStringList moves;
        for (const TreeMove& threat : play.threat) moves << white(number + 1, threat);
        return " (" + moves.join(' ') + ")";
    }

    // Black's replies of move `number` after the moves `before`: each real
    // defence with White's answers, then the moves that let the threat
    // through, grouped by the threat move that answers them.
    std::vector<SolutionLine> defenceLines(const std::vector<BlackDefence>& defences,
                                           const std::vector<TreeMove>& threat, int number,
                                           const std::vector<TMove>& before) const {
        std::vector<SolutionLine> out;
        for (const BlackDefence& defence : defences) {
            if (defence.allowsThreat) continue;
            std::vector<TMove> moves = before;
            moves.push_back(defence.move.move);
            if (defence.replies.empty()) out.push_back({black(number, defence.move), moves, {}});
            for (const WhitePlay& reply : defence.replies) {
                SolutionLine line;
                line.moves = moves;
                line.moves.push_back(reply.move.move);
                line.text = black(number, defence.move) + " " + white(number + 1, reply.move) +
                            threatOf(reply, number + 1);
                if (defence.replies.size() > 1) line.text += Translate(m_language, DUAL);
                if (reply.shortMate) line.text += Translate(m_language, SHORT_MATE);
                line.children = defenceLines(reply.defences, reply.threat, number + 1, line.moves);
                out.push_back(std::move(line));
            }
        }
        std::vector<bool> written(defences.size(), false);
        for (size_t i = 0; i < defences.size(); ++i) {
            const TreeMove* answer = threatAnswer(defences[i], threat);
            if (!defences[i].allowsThreat || written[i] || !answer) continue;
            QStringList grouped;
            for (size_t j = i; j < defences.size(); ++j) {
                const TreeMove* other = threatAnswer(defences[j], threat);
                if (!defences[j].allowsThreat || written[j] || !other || !(other->move == answer->move))
                    continue;
                grouped << move(defences[j].move);
                written[j] = true;
            }
            // The line plays the first of the group.
            SolutionLine line;
            line.moves = before;
            line.moves.push_back(defences[i].move.move);
            line.moves.push_back(answer->move);
            line.text =
                QString::number(number) + "..." + grouped.join(", ") + " " + white(number + 1, *answer);
            out.push_back(std::move(line));
        }
        return out;
    }

    static const TreeMove* threatAnswer(const BlackDefence& defence, const std::vector<TreeMove>& threat) {
        for (const WhitePlay& reply : defence.replies)
            for (const TreeMove& move : threat)
                if (reply.move.move == move.move) return &reply.move;
        return nullptr;
    }

    static void forgetMoves(std::vector<SolutionLine>& lines) {
        for (SolutionLine& line : lines) {
            line.moves.clear();
            forgetMoves(line.children);
        }
    }

    int m_language;
};

// How the tree shows `move` played on `parent`; nothing when it does not fit.
std::optional<TreeMove> describe(const TChessboard& parent, TChessboard& child, TMove move) {
    TreeMove shown{move, parent.m_aSquares[move.from], false, false, false};
    if (!PlayMove(parent, child, move)) return std::nullopt;
    shown.move = move;
    shown.capture = parent.m_aSquares[move.to] != 0 || move.enPassant;
    shown.check = CheckLevel(child) > 0;
    shown.mate = shown.check && !SideToMoveHasLegalMove(child);
    return shown;
}

} // namespace

std::vector<SolutionLine> SolutionLines(const SolutionTree& tree, int languageId) {
    return LineWriter(languageId).write(tree);
}

SolutionTree KeysOnlyTree(const TChessboard& start, int moves, const SolveResult& result) {
    SolutionTree tree;
    tree.moves = moves;
    tree.stopped = result.stopped;
    for (const TMove& key : result.moves) {
        TChessboard after;
        const std::optional<TreeMove> shown = describe(start, after, key);
        if (!shown) continue;
        WhitePlay play;
        play.move = *shown;
        const auto entry = result.solutions.find(key);
        if (entry != result.solutions.end() && !entry->second.threats.empty()) {
            // The result gives the threat as text; the tree shows it with the language's letters.
            std::string text = entry->second.threats.front();
            while (!text.empty() && (text.back() == '#' || text.back() == '+')) text.pop_back();
            try {
                TChessboard threatened;
                if (const auto threat = describe(after, threatened, ParseMoveOnBoard(after, text)))
                    play.threat.push_back(*threat);
            } catch (const std::exception&) {
                // A threat the reader does not take is left out; the result text still names it.
            }
        }
        tree.keys.push_back(std::move(play));
    }
    return tree;
}

SolutionPanel::SolutionPanel(WindowServices& window, BoardController& board, QWidget* parent)
    : QDockWidget(parent), m_window(window), m_board(board) {
    setObjectName(QStringLiteral("solutionPanel"));
    // Always there: the window has no command to bring a closed panel back.
    setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    auto* body = new QWidget(this);
    auto* layout = new QVBoxLayout(body);
    m_text = new QPlainTextEdit(body);
    m_text->setObjectName(QStringLiteral("solutionResult"));
    m_text->setReadOnly(true);
    m_text->setMaximumHeight(m_text->fontMetrics().lineSpacing() * RESULT_TEXT_LINES);
    m_lines = new QTreeWidget(body);
    m_lines->setObjectName(QStringLiteral("solutionLines"));
    m_lines->setHeaderHidden(true);
    m_lines->setColumnCount(1);
    // A long line of grouped defences scrolls rather than being cut.
    m_lines->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_lines->header()->setStretchLastSection(false);
    layout->addWidget(m_text);
    layout->addWidget(m_lines, 1);
    body->setMinimumWidth(PANEL_MIN_WIDTH);
    setWidget(body);
    connect(m_lines, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { onItemClicked(item); });
    connect(m_lines, &QTreeWidget::itemActivated, this,
            [this](QTreeWidgetItem* item) { onItemClicked(item); });
}

void SolutionPanel::attachTo(MainWindow& window) {
    window.addDockWidget(Qt::RightDockWidgetArea, this);
    // A window already on screen does not show a dock added to it by itself.
    show();
    connect(&window, &MainWindow::refreshTick, this, &SolutionPanel::refresh);
    refresh();
}

void SolutionPanel::setResult(const TChessProblem& problem, const QString& text, const SolveResult& result,
                              bool fromStart) {
    Outcome& outcome = m_outcomes[problem.id];
    outcome = Outcome{};
    outcome.text = text;
    std::copy(std::begin(problem.startPosition.m_aSquares), std::end(problem.startPosition.m_aSquares),
              outcome.squares.begin());
    outcome.plies = problem.plies;
    if (fromStart) {
        outcome.tree = result.tree;
        // Keys the tree does not hold (no tree asked, or a stop before it got to them) are listed alone.
        const SolutionTree keys = KeysOnlyTree(problem.startPosition, problem.stipulationMoves(), result);
        for (const WhitePlay& key : keys.keys) {
            const auto& held = outcome.tree.keys;
            if (std::none_of(held.begin(), held.end(),
                             [&key](const WhitePlay& play) { return play.move.move == key.move.move; }))
                outcome.tree.keys.push_back(key);
        }
        outcome.tree.stopped = result.tree.stopped || result.stopped;
    }
    ++m_version;
    refresh();
}

void SolutionPanel::clearResult(int32_t problemId) {
    if (m_outcomes.erase(problemId)) ++m_version;
    refresh();
}

void SolutionPanel::refresh() {
    const int language = m_window.language();
    setWindowTitle(Translate(language, PANEL_TITLE));
    const TChessProblem* problem = m_window.problems().Current();
    const Outcome* outcome = nullptr;
    if (problem) {
        const auto found = m_outcomes.find(problem->id);
        // A problem set up anew since its solve: the lines no longer belong to it.
        if (found != m_outcomes.end() && found->second.plies == problem->plies &&
            std::equal(found->second.squares.begin(), found->second.squares.end(),
                       std::begin(problem->startPosition.m_aSquares)))
            outcome = &found->second;
    }
    const int32_t id = outcome ? problem->id : 0;
    if (id == m_shownId && language == m_shownLanguage && m_version == m_shownVersion) return;
    m_shownId = id;
    m_shownLanguage = language;
    m_shownVersion = m_version;
    display(outcome);
}

void SolutionPanel::display(const Outcome* outcome) {
    m_lines->clear();
    m_shownMoves.clear();
    m_text->setPlainText(outcome ? outcome->text : QString());
    if (!outcome) return;
    const std::vector<SolutionLine> lines = SolutionLines(outcome->tree, m_shownLanguage);
    addLines(m_lines->invisibleRootItem(), lines);
    m_lines->expandAll();
    // A try's line names its refutations already: the lines below wait for a click on the arrow.
    const QString tries = Translate(m_shownLanguage, TRIES_HEADING);
    for (int i = 0; i < m_lines->topLevelItemCount(); ++i) {
        QTreeWidgetItem* heading = m_lines->topLevelItem(i);
        if (heading->text(0) != tries) continue;
        for (int k = 0; k < heading->childCount(); ++k) heading->child(k)->setExpanded(false);
    }
}

void SolutionPanel::addLines(QTreeWidgetItem* parent, const std::vector<SolutionLine>& lines) {
    for (const SolutionLine& line : lines) {
        auto* item = new QTreeWidgetItem(parent, QStringList{line.text});
        item->setToolTip(0, line.text);
        if (!line.moves.empty()) {
            item->setData(0, LINE_ROLE, static_cast<int>(m_shownMoves.size()));
            m_shownMoves.push_back(line.moves);
        }
        addLines(item, line.children);
    }
}

void SolutionPanel::onItemClicked(QTreeWidgetItem* item) {
    if (!item) return;
    const QVariant index = item->data(0, LINE_ROLE);
    if (!index.isValid()) return;
    playLine(m_shownMoves.at(static_cast<size_t>(index.toInt())));
}

void SolutionPanel::playLine(const std::vector<TMove>& moves) {
    TChessProblem* problem = m_window.problems().Current();
    if (!problem || moves.empty() || m_board.isSettingMode() ||
        m_window.runningSolves().contains(problem->id))
        return;
    // 1. The whole line is tried first: one that does not fit leaves the board as it was.
    std::deque<TChessboard> tried;
    const TChessboard* parent = &problem->startPosition;
    for (TMove move : moves) {
        if (!PlayMove(*parent, tried.emplace_back(), move)) return;
        parent = &tried.back();
    }
    // 2. It replaces whatever was played on the board.
    for (size_t i = 0; i < moves.size(); ++i) PlayOnChain(*problem, i, moves[i]);
    m_window.showCurrentProblem();
    // What the status said (the key's threat) belongs to another position.
    m_window.showStatus(QString());
}

QString SolutionPanel::resultText() const {
    return m_text->toPlainText();
}

} // namespace zorvane
