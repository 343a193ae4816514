#pragma once
// The images the views draw: the shared image list of grids (by the numbers of
// grid/GridImages.h), the icons of buttons in dialogs, and the icons of the host's toolbar
// commands (CButtonST). They are drawn once, in code, and kept for the process.
#include <QIcon>

namespace ImageSet {

/// The image of a grid cell by number; a null icon for a number the set does not have.
QIcon Grid(int number);
/// The icon of a toolbar command (CButtonST::h24Icon...); null when there is none.
QIcon Command(int icon);
/// The icon a dialog button shows beside its caption (by the numbers of dialog/ButtonIcons.h).
QIcon Button(int icon);

} // namespace ImageSet
