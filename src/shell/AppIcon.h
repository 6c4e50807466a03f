// The program's icon, drawn in code. This drawing is the icon's source: the
// images installed for the desktop (data/icons) are saved from it.
#pragma once

#include <QIcon>
#include <QImage>

#include <array>

namespace morvanta::shell {

// The sizes the window's icon carries, and those installed in the icon theme.
inline constexpr std::array<int, 7> kApplicationIconSizes{16, 24, 32, 48, 64, 128, 256};

// A session of stacked tracks with clips on them, in a rounded square,
// `size` pixels wide and high, on a transparent ground.
QImage ApplicationIconImage(int size);

QIcon ApplicationIcon();

}  // namespace morvanta::shell
