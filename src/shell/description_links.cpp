#include "shell/description_links.h"

#include <QRegularExpression>

namespace zorvane {

namespace {

// The number ends every path, so that one code gives one page.
QString pageBase(QChar letter) {
    switch (letter.toUpper().unicode()) {
    case 'P':
        return QStringLiteral("https://pdb.dieschwalbe.de/P");
    case 'Y':
        return QStringLiteral("https://www.yacpdb.org/#");
    case 'M':
        return QStringLiteral("https://www.mesonbase.com/problem/");
    case 'A':
        return QStringLiteral("https://www.albrecht-database.org/problem/");
    case 'G':
        return QStringLiteral("https://gameknot.com/chess-puzzle.pl?pz=");
    case 'C':
        return QStringLiteral("https://www.chessstar.com/problem/");
    default:
        return QString();
    }
}

} // namespace

std::optional<DescriptionLink> FindDescriptionLink(const QString& description) {
    // A word of its own: "Y123" links, "XY123" or "Y123a" do not.
    static const QRegularExpression code(QStringLiteral("(?<![\\w])([PYMAGCpymagc])(\\d{1,9})(?![\\w])"));
    const QRegularExpressionMatch match = code.match(description);
    if (!match.hasMatch()) return std::nullopt;
    const QString number = match.captured(2);
    return DescriptionLink{match.captured(0), QUrl(pageBase(match.captured(1).at(0)) + number)};
}

} // namespace zorvane
