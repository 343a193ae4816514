#pragma once
// The shared icon list of dialog buttons: the icons a button can show beside its caption, by
// number (CDialogModel::SetIcon). Views draw them; presenters name them by these numbers.
namespace ButtonIcon {

enum : int {
    None = -1,
    Dodaj = 0,       // add an entry
    Brisi = 1,       // delete the selected entries
    BrisiSve = 2,    // delete every entry
    Gore = 3,        // move up
    Dole = 4,        // move down
    Sortiranje = 5,  // sort (a menu of orders)
    Generisanje = 6, // generate entries from rules
    Nikad = 7,       // a never-combine rule
    Uvek = 8,        // an always-combine rule
    Ucitavanje = 9,  // take entries from storage
    Snimanje = 10,   // keep entries in storage
    Uvoz = 11,       // take entries from another model file
    Naziv = 12,      // make a name
};

} // namespace ButtonIcon
