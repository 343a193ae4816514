#pragma once
// Pictures of the desktop host for its documentation: the main window on the example model,
// in the input and in the results display, and every editor the module's commands open.
#include <QString>

class CMainWindow;

/// Renders the pictures into the directory (made when missing); returns how many were written.
int RenderScreenshots(CMainWindow& window, const QString& directory);
