#pragma once
// BoardController: what the board's clicks and the board commands mean. It
// plays moves by mouse on the problem's chain of positions, walks back and
// forth along it, and runs position-setting mode with its undo and redo.
//
// Use from the main window:
//   BoardController(BoardView* view, Prompts& prompts, std::function<bool()> solving, QObject* parent)
//       The boxes and questions go through `prompts`, which outlives the
//       controller. `solving` tells whether a solve runs on the current
//       problem; moves, position setting and stipulation changes are refused
//       meanwhile.
//   void setProblem(TChessProblem* problem, const TChessboard* shown = nullptr)
//       Shows the problem's last position, or `shown` when it is the start
//       position or one of the chain (the moves after it can be walked to);
//       call it again after anything else changed the problem or its chain.
//       Leaves setting mode without the checks of leaving and forgets undo and
//       redo. nullptr shows nothing.
//   bool dispatch(CommandId command)
//       PositionSettingMode on/off, MoveBack, MoveRedo (forward), ViewRotateBoard,
//       Undo, Redo, StipulationUp/Down (+1/-1) and StipulationUpTen/DownTen
//       (+10/-10). False for any other command.
//   bool isSettingMode() const, bool rotated() const
//   const TChessboard* shownPosition() const   the board on screen, nullptr without a problem
//   bool canUndo() const, bool canRedo() const   for the menu state
//   void setLanguage(int languageId)
//   void setPromotionChooser(PromotionChooser)
//       A menu by default; tests answer it.
// Signals:
//   statusText(QString)  the status line after a move: what the position holds,
//                        or White's threat when Black is to move
//   positionChanged()    the shown position, the start position or the problem's
//                        stipulation, tags or variants changed
#include "core/chessboard.h"
#include "options/localized_text.h"
#include "problems/chess_problem.h"
#include "shell/board_texts.h"
#include "shell/command_id.h"
#include "shell/position_setting.h"
#include "shell/prompts.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

namespace zorvane {

class BoardView;

class BoardController : public QObject {
    Q_OBJECT

  public:
    // The figure a pawn becomes: a kind, or 0 to give the move up.
    using PromotionChooser = std::function<uint8_t(bool white)>;

    BoardController(BoardView* view, Prompts& prompts, std::function<bool()> solving,
                    QObject* parent = nullptr);
    ~BoardController() override;

    void setProblem(TChessProblem* problem, const TChessboard* shown = nullptr);
    bool dispatch(CommandId command);
    bool isSettingMode() const { return m_settingMode; }
    bool rotated() const { return m_rotated; }
    const TChessboard* shownPosition() const;
    bool canUndo() const { return m_settingMode && m_editor.CanUndo(); }
    bool canRedo() const { return m_settingMode && m_editor.CanRedo(); }
    void setLanguage(int languageId);
    void setPromotionChooser(PromotionChooser chooser) { m_choosePromotion = std::move(chooser); }

  signals:
    void statusText(const QString& text);
    void positionChanged();

  private:
    void onSquarePressed(int square, Qt::MouseButton button);
    void onMoveRequested(int from, int to);
    // The position just played stood earlier in the line, with the same side to move.
    bool repeatsEarlierPosition() const;
    void onPaletteClicked(int column, bool white);
    void onStipulationArrow(int delta);

    void toggleSettingMode();
    bool enterSettingMode();
    bool leaveSettingMode();
    void changeStipulation(int delta);
    void undoOrRedo(bool undo);
    void step(int delta);
    // Whether a running solve forbids changing the position; says so if it does.
    bool refusedWhileSolving();
    void showVerdictOf(const TChessboard& position);
    void inform(BoardText text);
    void showError(const QString& text);
    // A Yes/No question under `title`; true for Yes.
    bool confirm(MessageTitle title, const QString& text);
    void refreshView();
    void changed();

    BoardView* m_view;
    std::function<bool()> m_solving;
    TChessProblem* m_problem = nullptr;
    // 0 the start position, k the k-th played position.
    size_t m_shownIndex = 0;
    bool m_settingMode = false;
    bool m_rotated = false;
    uint8_t m_selectedFigure = 0;
    int m_languageId = 1;
    PositionEditor m_editor;
    Prompts& m_prompts;
    PromotionChooser m_choosePromotion;
};

} // namespace zorvane
