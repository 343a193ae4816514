#pragma once
// The shared image list of grids: the images every grid of the host's dialogs can show in a
// cell, by number. Views draw them; presenters name them by these numbers.
namespace GridImage {

enum : int {
    None = -1,
    Uvek = 0,       // a load case is always combined with the current one
    Nikad = 1,      // a load case is never combined with the current one
    Zaglavlje = 4,  // the corner of a grid: ordinals below, names beside
    Tekuci = 6,     // one of the load cases whose rules are edited
    Fiksno = 9,     // a coefficient that stays fixed (a check column's header)
    Pravila = 12,   // the header of the column of rule marks
    Izabrani = 13,  // the load case whose rules the marks show
    Seizmicki = 18, // a combination that holds a seismic load case
};

} // namespace GridImage
