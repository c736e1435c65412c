#include "shell/board_controller.h"

#include "core/chess_exception.h"
#include "engine/solve_texts.h"
#include "shell/board_geometry.h"
#include "shell/board_rules.h"
#include "shell/board_texts.h"
#include "shell/board_view.h"
#include "shell/promotion_chooser.h"
#include "shell/shell_text.h"

#include <algorithm>

namespace zorvane {

namespace {

constexpr int STIPULATION_STEP = 1;
constexpr int STIPULATION_BIG_STEP = 10;

QString stipulationText(const TChessProblem& problem) {
    const int moves = StatedStipulationMoves(problem);
    switch (problem.type) {
    case PROBLEM_DIRECT_MATE:
        return QStringLiteral("#%1").arg(moves);
    case PROBLEM_SELFMATE:
        return QStringLiteral("s#%1").arg(moves);
    default:
        return QString();
    }
}

// Moves of the limit that the chain has reached.
int limitMoves(const TChessProblem& problem) {
    const int moves = problem.stipulationMoves();
    return moves != 0 ? moves : (problem.plies + 1) / 2;
}

} // namespace

BoardController::BoardController(BoardView* view, Prompts& prompts, std::function<bool()> solving,
                                 QObject* parent)
    : QObject(parent), m_view(view), m_solving(std::move(solving)), m_prompts(prompts) {
    m_choosePromotion = [this](bool white) { return ChoosePromotionByMenu(m_view, m_languageId, white); };
    connect(view, &BoardView::squarePressed, this, &BoardController::onSquarePressed);
    connect(view, &BoardView::moveRequested, this, &BoardController::onMoveRequested);
    connect(view, &BoardView::paletteClicked, this, &BoardController::onPaletteClicked);
    connect(view, &BoardView::stipulationArrow, this, &BoardController::onStipulationArrow);
    setLanguage(m_languageId);
    refreshView();
}

BoardController::~BoardController() = default;

void BoardController::setProblem(TChessProblem* problem, const TChessboard* shown) {
    m_problem = problem;
    m_settingMode = false;
    m_editor.Clear();
    m_shownIndex = problem ? problem->playedPositions.size() : 0;
    if (problem && shown) {
        // The chain stays; only the board on screen is another one of it.
        const auto& chain = problem->playedPositions;
        if (shown == &problem->startPosition) m_shownIndex = 0;
        for (size_t i = 0; i < chain.size(); ++i)
            if (&chain[i] == shown) m_shownIndex = i + 1;
    }
    refreshView();
}

const TChessboard* BoardController::shownPosition() const {
    if (!m_problem) return nullptr;
    const auto& chain = m_problem->playedPositions;
    if (m_shownIndex == 0 || chain.empty()) return &m_problem->startPosition;
    return &chain[std::min(m_shownIndex, chain.size()) - 1];
}

void BoardController::setLanguage(int languageId) {
    m_languageId = languageId;
    if (m_view)
        m_view->setArrowToolTip(Translate(
            languageId,
            {L"Kliknij u góry/dołu, aby zwiększyć/zmniejszyć liczbę ruchów (warunek) w trybie ustawiania "
             L"pozycji",
             L"Click at the top/bottom to increase/decrease number of moves (stipulation) in pos.setting "
             L"mode",
             L"Клацніть угорі/внизу, щоб збільшити/зменшити кількість ходів (умову) в режимі розстановки"}));
}

bool BoardController::dispatch(CommandId command) {
    switch (command) {
    case CommandId::PositionSettingMode:
        toggleSettingMode();
        return true;
    case CommandId::MoveBack:
        step(-1);
        return true;
    case CommandId::MoveRedo:
        step(1);
        return true;
    case CommandId::ViewRotateBoard:
        m_rotated = !m_rotated;
        m_view->setRotated(m_rotated);
        return true;
    case CommandId::Undo:
        undoOrRedo(true);
        return true;
    case CommandId::Redo:
        undoOrRedo(false);
        return true;
    case CommandId::StipulationUp:
        changeStipulation(STIPULATION_STEP);
        return true;
    case CommandId::StipulationDown:
        changeStipulation(-STIPULATION_STEP);
        return true;
    case CommandId::StipulationUpTen:
        changeStipulation(STIPULATION_BIG_STEP);
        return true;
    case CommandId::StipulationDownTen:
        changeStipulation(-STIPULATION_BIG_STEP);
        return true;
    default:
        return false;
    }
}

// ---- Playing by mouse.

void BoardController::onMoveRequested(int from, int to) {
    if (!m_problem || m_settingMode || from < 0 || from > 63) return;
    // 1. A solve owns the position: the click is dropped.
    if (m_solving && m_solving()) return;
    const TChessboard& shown = *shownPosition();
    // 2. The stipulation's plies are spent.
    if (shown.m_shPliesLeft == 0) {
        emit statusText(BoardMessage(m_languageId, BoardText::NoMoreMoves).arg(limitMoves(*m_problem)));
        return;
    }
    // 3. White to move in the start position while the black king is checked.
    if (m_shownIndex == 0 && shown.whiteToMove() && shown.blackInCheck()) {
        showError(BoardMessage(m_languageId, BoardText::CheckedAtStart));
        return;
    }
    const uint8_t mover = shown.m_aSquares[from];
    if (!isPieceByte(mover) || isWhite(mover) != shown.whiteToMove()) return;
    // 4. The strict reader of moves decides; a promotion asks for its figure.
    std::optional<TMove> move = LegalMoveOnBoard(shown, from, to, 0);
    if (move && move->promotionKind() != 0) {
        const uint8_t kind = m_choosePromotion(shown.whiteToMove());
        if (kind == 0) return;
        move = LegalMoveOnBoard(shown, from, to, kind);
    }
    if (!move) {
        inform(BoardText::IllegalMove);
        return;
    }
    // 5. A mate problem keeps only lines in which White can still mate.
    if (m_problem->type == PROBLEM_DIRECT_MATE && EngineRefusesMove(shown, *move)) {
        inform(BoardText::EngineRefusesMove);
        return;
    }
    // 6. The move joins the chain; the status says what the new position holds.
    PlayOnChain(*m_problem, m_shownIndex, *move);
    m_shownIndex = m_problem->playedPositions.size();
    changed();
    showVerdictOf(*shownPosition());
    // The engine ends any line at a repeated position: the user is told so.
    if (repeatsEarlierPosition()) inform(BoardText::PositionRepetition);
}

bool BoardController::repeatsEarlierPosition() const {
    const auto& chain = m_problem->playedPositions;
    if (chain.empty()) return false;
    const TChessboard& last = chain.back();
    const auto same = [&last](const TChessboard& earlier) {
        return earlier.whiteToMove() == last.whiteToMove() &&
               std::equal(std::begin(last.m_aSquares), std::end(last.m_aSquares),
                          std::begin(earlier.m_aSquares));
    };
    return same(m_problem->startPosition) || std::any_of(chain.begin(), chain.end() - 1, same);
}

void BoardController::showVerdictOf(const TChessboard& position) {
    const PositionJudgement judgement = JudgePosition(*m_problem, position);
    switch (judgement.verdict) {
    case PositionVerdict::Stalemate:
        emit statusText(BoardMessage(m_languageId, BoardText::Stalemate));
        break;
    case PositionVerdict::MateInOne:
        emit statusText(BoardMessage(m_languageId, BoardText::MateInOne));
        break;
    case PositionVerdict::TemporaryRegisterMate:
        emit statusText(BoardMessage(m_languageId, BoardText::TemporaryRegisterMate).arg(judgement.moves));
        break;
    case PositionVerdict::NoMate:
        emit statusText(BoardMessage(m_languageId, BoardText::NoMate));
        break;
    case PositionVerdict::Nothing: {
        const std::string threat = WhiteThreat(*m_problem, position);
        emit statusText(threat.empty() ? QString()
                                       : QString::fromStdWString(ThreatLabel(m_languageId)) +
                                             QString::fromStdString(threat));
        break;
    }
    }
}

void BoardController::step(int delta) {
    if (!m_problem || m_settingMode) return;
    const size_t last = m_problem->playedPositions.size();
    const size_t shown = std::min(m_shownIndex, last);
    if (delta < 0 ? shown == 0 : shown == last) return;
    m_shownIndex = delta < 0 ? shown - 1 : shown + 1;
    changed();
}

// ---- Position setting.

bool BoardController::refusedWhileSolving() {
    if (!m_solving || !m_solving()) return false;
    inform(BoardText::ToolUnavailable);
    return true;
}

void BoardController::toggleSettingMode() {
    if (!m_problem || refusedWhileSolving()) return;
    if (m_settingMode ? leaveSettingMode() : enterSettingMode()) changed();
}

bool BoardController::enterSettingMode() {
    if (!m_problem->playedPositions.empty()) {
        if (!confirm(MessageTitle::Question, BoardMessage(m_languageId, BoardText::StartEditing)))
            return false;
        m_problem->playedPositions.clear();
    }
    // A played line stood in for the stipulation; the stated one comes back.
    m_problem->plies = m_problem->stipulationPlies;
    RefreshStartPosition(*m_problem);
    m_shownIndex = 0;
    m_editor.Begin(*m_problem);
    m_settingMode = true;
    return true;
}

bool BoardController::leaveSettingMode() {
    TChessboard start = m_problem->startPosition;
    // 1. Kings, pawn rows and both kings in check, by the strict set-up.
    try {
        SetupChessboard(start, true);
    } catch (const ChessException& e) {
        showError(SetupFaultMessage(m_languageId, e.what()));
        return false;
    }
    // 2. The side not to move may not stand in check.
    if (start.whiteToMove() ? start.blackInCheck() : start.whiteInCheck()) {
        const BoardText text =
            start.whiteToMove() ? BoardText::BlackKingCheckedAtStart : BoardText::WhiteKingCheckedAtStart;
        showError(BoardMessage(m_languageId, text));
        return false;
    }
    // 3. Beyond nine queens and pawns of a colour the move lists may overflow.
    if (TooManyQueensAndPawns(start) &&
        !confirm(MessageTitle::Warning, BoardMessage(m_languageId, BoardText::TooManyQueensAndPawns) +
                                            BoardMessage(m_languageId, BoardText::ContinueAnyway)))
        return false;
    m_problem->startPosition = start;
    m_settingMode = false;
    return true;
}

void BoardController::onSquarePressed(int square, Qt::MouseButton button) {
    if (!m_problem || !m_settingMode) return;
    if (button != Qt::LeftButton && button != Qt::RightButton) return;
    if (refusedWhileSolving()) return;
    uint8_t piece = m_selectedFigure;
    // The right button puts the figure of the other colour.
    if (button == Qt::RightButton && piece != 0) piece ^= WHITE | BLACK;
    if (m_editor.PutOrRemove(*m_problem, square, piece)) changed();
}

void BoardController::onPaletteClicked(int column, bool white) {
    if (!m_settingMode) return;
    try {
        m_selectedFigure =
            static_cast<uint8_t>(board_geometry::ColumnToPiece(column) | (white ? WHITE : BLACK));
    } catch (const ChessException& e) {
        showError(QString::fromStdString(e.what()));
        return;
    }
    m_view->setSelectedFigure(m_selectedFigure);
}

void BoardController::onStipulationArrow(int delta) {
    const bool big = delta > STIPULATION_STEP || delta < -STIPULATION_STEP;
    if (delta > 0)
        dispatch(big ? CommandId::StipulationUpTen : CommandId::StipulationUp);
    else
        dispatch(big ? CommandId::StipulationDownTen : CommandId::StipulationDown);
}

void BoardController::changeStipulation(int delta) {
    if (!m_problem || refusedWhileSolving()) return;
    if (!m_settingMode) {
        inform(BoardText::StipulationToolUnavailable);
        return;
    }
    if (m_editor.ChangeStipulation(*m_problem, delta)) changed();
}

void BoardController::undoOrRedo(bool undo) {
    if (!m_problem || !m_settingMode || refusedWhileSolving()) return;
    if (undo ? m_editor.Undo(*m_problem) : m_editor.Redo(*m_problem)) changed();
}

// ---- Boxes.

void BoardController::inform(BoardText text) {
    m_prompts.message(TitleText(m_languageId, MessageTitle::Information), BoardMessage(m_languageId, text),
                      PromptIcon::Information);
}

void BoardController::showError(const QString& text) {
    m_prompts.message(TitleText(m_languageId, MessageTitle::Error), text, PromptIcon::Error);
}

bool BoardController::confirm(MessageTitle title, const QString& text) {
    const PromptIcon icon = title == MessageTitle::Warning ? PromptIcon::Warning : PromptIcon::Question;
    return m_prompts.ask(TitleText(m_languageId, title), text, Buttons::YesNo, icon) == Answer::Yes;
}

// ---- The view.

void BoardController::refreshView() {
    const TChessboard* shown = shownPosition();
    m_view->setPosition(shown ? *shown : EmptyChessboard());
    m_view->setSettingMode(m_settingMode);
    m_view->setRotated(m_rotated);
    m_view->setSelectedFigure(m_selectedFigure);
    m_view->setStipulationText(m_problem ? stipulationText(*m_problem) : QString());
    const bool playable = shown && !m_settingMode;
    m_view->setMovableColour(playable ? (shown->whiteToMove() ? WHITE : BLACK) : 0);
}

void BoardController::changed() {
    refreshView();
    emit positionChanged();
}

} // namespace zorvane
