#pragma once
// The short database codes a problem's description may hold ("Y123" for
// Yacpdb and so on), and the page each one names. Only the code's letter and
// number come from the user; the hosts are ours.
#include <QString>
#include <QUrl>

#include <optional>

namespace zorvane {

struct DescriptionLink {
    QString code; // as written in the description, e.g. "Y123"
    QUrl url;
};

// The first code in `description`: a letter of P (Pdb), Y (Yacpdb), M (Meson),
// A (Albrecht), G (Gameknot) or C (chessStar) followed by digits, standing as
// a word of its own; nothing when there is none.
std::optional<DescriptionLink> FindDescriptionLink(const QString& description);

} // namespace zorvane
