#pragma once
// Globals of the host's document and the refresh of its views.
#include <functional>

class CVortaUtils {
public:
    /// The results selector must not be used (for example while results are computed).
    static inline bool g_bDisableComboResults = false;
    /// A command for entering loads is running.
    static inline bool g_bAktivnaKomandaZaUnosOpterecenja = false;
    /// The current load case is an influence-line case (written by the loads module).
    static inline bool g_bAktivanSlOptUticajneLinije = false;
    /// A model is being loaded.
    static inline bool s_bLoading = false;

    using ViewsHandler = std::function<void(int, int, int, int, int)>;
    /// Refreshes the views of the document through the handler the host installed.
    static void UpdateViews(int a, int b, int c, int d, int e);
    static void SetViewsHandler(ViewsHandler handler);
};
