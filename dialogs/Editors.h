#pragma once
// The module's editors as the services reach them: the set-up of the dialogs layer fills the
// editor runners of COpterecenjeApp, so that the commands the module registers open them
// through the host's modal runner.
namespace opterecenje {

/// Fills COpterecenjeApp's editor runners with the editors of this layer.
void PostaviEditore();

} // namespace opterecenje
