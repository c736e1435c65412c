#include "shell/promotion_chooser.h"

#include "core/piece.h"
#include "shell/board_texts.h"
#include "shell/figure_glyphs.h"

#include <QAction>
#include <QCursor>
#include <QMenu>

namespace zorvane {

uint8_t ChoosePromotionByMenu(QWidget* parent, int languageId, bool white) {
    struct Choice {
        uint8_t kind;
        BoardText name;
    };
    constexpr Choice CHOICES[] = {{KIND_QUEEN, BoardText::Queen},
                                  {KIND_ROOK, BoardText::Rook},
                                  {KIND_BISHOP, BoardText::Bishop},
                                  {KIND_KNIGHT, BoardText::Knight}};
    QMenu menu(parent);
    for (const Choice& choice : CHOICES) {
        const uint8_t piece = static_cast<uint8_t>(choice.kind | (white ? WHITE : BLACK));
        QAction* action =
            menu.addAction(FigureGlyph(piece) + QStringLiteral("  ") + BoardMessage(languageId, choice.name));
        action->setData(choice.kind);
    }
    const QAction* chosen = menu.exec(QCursor::pos());
    return chosen ? static_cast<uint8_t>(chosen->data().toUInt()) : uint8_t{0};
}

} // namespace zorvane
