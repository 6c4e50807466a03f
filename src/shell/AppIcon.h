// The program's icon, drawn at start: no image files to ship.
#pragma once

#include <QIcon>

namespace morvanta::shell {

// A session of stacked tracks with clips on them, in a rounded square.
QIcon ApplicationIcon();

}  // namespace morvanta::shell
