#pragma once
// COpterecenjeApp: the application object of the loads module. Its static services put load
// cases, combinations and envelopes on one numbering scale and turn a number into the factor
// vector, unit or text the host needs; they fill the host's load selector and react to the
// user's choice; they register the module's commands; and they run the model-wide maintenance
// of load cases (removing seismic and SRSS cases, the influence-line load case, activating an
// envelope).
//
// The global scale: load cases 1..N by their ordinals, combinations N+1..N+M, envelopes
// N+M+1..N+M+E; the zero-based number of a load is its ordinal minus one. Ordinal 0 is no load.
//
// Everything here runs on the host's user-interface thread.
#include "framework/Array.h"
#include "framework/String.h"
#include "framework/WinApp.h"
#include "model/ComboItemArray.h"
#include "model/GeneralizedLoadCase.h"
#include "model/LoadCaseDescriptions.h"
#include "model/ModelGlobals.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/Id.h"

#include <functional>

class ClTranslator;
class COptionInfo;
class COptionInfoList;
class CStabilnostParams;

class COpterecenjeApp : public CWinApp {
public:
    COpterecenjeApp() : CWinApp(nullptr) {}

    // ---------------------------------------------------------------- numbering of loads

    /// Analysis theory: 1, a combination's results are the factor-weighted sum of its load
    /// cases' results; any other value, every combination has results of its own. The records
    /// read the same storage.
    static inline int& gbTeorija = CModelGlobals::nTeorija;
    /// One-based ordinals of the loads whose results could not be computed (unstable).
    static inline CArray<int> gArrRedBrLabilnihSlOpt;
    /// One-based position of the last load the results selector accepted; -1: none yet.
    static inline int gnLastGoodStabile = -1;

    /// Counts the load cases: seismic ones and those with the NDA mark into the first counter,
    /// all others into the second.
    static void GetBrojOpt(int& nSeizmickihINda, int& nOstalih);
    /// Number of load cases plus number of combinations.
    static int UkupanBrojSloptOKombinacija();
    static int GetTeorija();
    static void SetTeorija(int teorija);

    /// Factor vector for the analysis: combinations expanded into their load cases.
    static void ZerobasedRedniBrojToFaktori_ZaProracun(int zerobased, CArray<double>& faktori);
    /// Factor vector for printing and result display (depends on the theory).
    static void ZerobasedRedniBrojToFaktori_ZaIspis(int zerobased, CArray<double>& faktori);
    /// The vectors of every load (envelopes included) in order, each handed to `red`, exactly
    /// as the two services above give them one load at a time, in one walk of the store.
    static void SviFaktori_ZaProracun(const std::function<void(int, const CArray<double>&)>& red);
    static void SviFaktori_ZaIspis(const std::function<void(int, const CArray<double>&)>& red);
    /// The load with that zero-based number as a linear unit.
    static void ZerobasedRedniBrojToLoadCaseUnit(int zerobased, CLoadCaseUnit& unit);
    /// One-based ordinal of the load a unit stands for; 0 when none.
    static int LoadCaseUnitToRedniBroj(const CLoadCaseUnit& unit);
    /// The unit as a sum of Roman numerals with factors ("I+1.50xII-1.00xIII"); with
    /// bJedinicni non-zero factors of 1.0 are written too.
    static CString LoadCaseUnitToString(const CLoadCaseUnit& unit, int bJedinicni);
    /// The same with a count suffix per load case ("(%d)" with count-1 when above 1); a unit
    /// that stands for one whole combination is first expanded into its load cases.
    static CString LoadCaseUnitToString(const CLoadCaseUnit& unit, const OCArray<int>& brojevi,
                                        int bJedinicni);
    /// Name of the host's current load: "Opt. 7" (short) or "Opt. 7: name"; empty when the
    /// current load is not in the results selector's items.
    static CString NazivTekucegOpterecenja(int bKratko, ClTranslator& translator);
    /// The key of a selector item: its one-based ordinal on the global scale. The host's
    /// current-load number (CMainFrame::GetCurrentSloptId) is read as such an ordinal.
    static int KljucComboItema(const CComboItem& item, int nSlOpt, int nKomb);

    static void MarkAsLabilanSlOpt(int redniBroj);
    static int IsMarkedAsLabilanSlOpt(int redniBroj);
    static void ResetArrayLabilnihSlOpt();

    // ---------------------------------------------------------------- host functions
    /// Makes a generalized load case the host's current load (filled by the host).
    static inline int (*ChangeLoadCaseTo)(const CGeneralizedLoadCase& glc, int flag) = nullptr;
    /// Kind of analysis (filled by the host).
    static inline int (*DajTipProracuna)() = nullptr;
    /// Whether accidental torsion is used (filled by the host).
    static inline int (*RadiSeSaSlucajnomTorzijom)() = nullptr;
    /// Creates the results of SRSS combinations (filled by the host).
    static inline void (*KreirajRezultateZaSRSSkomb)() = nullptr;
    /// Makes the name of a load case with the NDA mark (filled by the host); the records read
    /// the same storage.
    static inline auto& NapraviImeDDASlOpt = CModelGlobals::pfnNapraviImeDDASlOpt;
    /// Deletes the results of dimensioning, which an SRSS change makes wrong (filled by the
    /// host); called only when SRSS cases were written.
    static inline void (*BrisiRezultateDimenzionisanja)() = nullptr;
    /// Copies the individual loads of one load case into another, new one (filled by the
    /// host); called within the undo step that creates the copy.
    static inline void (*KopirajPojedinacnaOpterecenja)(const CId& izvor,
                                                        const CId& kopija) = nullptr;

    // ---------------------------------------------------------------- editors
    // Runners of the modal editors, filled by the dialogs layer; while one is null its command
    // does nothing.
    /// The load case list editor.
    static inline int (*gfnOdradiSlucajeviOpterecenjaDlg)() = nullptr;
    /// The envelope and load choice dialog.
    static inline int (*gfnOdradiOdabirOpterecenjaDlg)() = nullptr;
    /// The combination editor.
    static inline int (*gfnOdradiKombinacijeOpterecenjaDlg)() = nullptr;
    /// The stability combinations dialog over a copy of the parameters; 1 when confirmed.
    static inline int (*gfnOdradiStabilnostDlg)(void* hParent, CStabilnostParams& params) = nullptr;

    // ---------------------------------------------------------------- selectors and commands
    /// One item per position of the results selector: load cases, combinations, envelopes.
    static inline CComboItemArray gComboItemArray;
    /// The item NazivTekucegOpterecenja found last.
    static inline CComboItem gTekuciComboItem;

    /// Set-up of the module: host pointers, persistent classes, the load interface factory
    /// and the eight commands with the load selector.
    static void SetUp(COptionInfoList& list);

    /// Refills the selector in the host's mode; n = -1 keeps the current choice.
    static void UpdateCombo(int n);
    static void UpdateComboStandard(int n);
    static void OnComboStandard();
    static void UpdateComboResults(int n);
    static void OnComboResults();
    /// Makes the load of a selector item the host's current load.
    static void OnLoadCaseChange(const CComboItem& item);

    static int OnSlucajeviOpterecenja();
    static int OnSlucajeviOpterecenja2();
    static int OnKombinacijeOpterecenja();
    static int OnCombo();
    static int OnSledeciSlOpt();
    static int OnPrethodniSlOpt();

    static void UpdateEnabled(COptionInfo& info);
    static void UpdateComboCtrl(COptionInfo& info);
    static void UpdateNextSlOpt(COptionInfo& info);
    static void UpdatePrevSlOpt(COptionInfo& info);

    /// Forgets what the selectors remember between calls (the accepted standard position, the
    /// last announced load), as for a newly opened document.
    static void ResetSelektora();
    /// The position last accepted in the standard selector.
    static int DajZapamcenuStandardnuPoziciju() { return s_nZapamcenaStandardna; }

    // ---------------------------------------------------------------- maintenance
    /// Deletes every SRSS load case and the combinations that contain it.
    static void BrisanjeSrssSlOpt();
    /// Deletes every seismic load case and every one with the NDA mark, and the combinations
    /// that contain them.
    static void BrisanjeSeizmickihSlOpt();
    /// Creates (or takes over) the load case that carries influence lines; returns its id.
    static CId DodajSlOptUticajneLinije(const CString& naziv, eUticajUticajneLin uticaj);
    /// Renames the influence-line load case.
    static void IzmeniSlOptUticajneLinije(const CString& naziv, CId id);
    /// Makes envelope number rbrAnvelope (one-based) the active selector item.
    static void AktivirajAnvelopu(int rbrAnvelope);
    /// No active envelope, an empty item active.
    static void ResetAnvelope();
    /// The active envelope number (0: none).
    static int DajAktivnuAnvelopu() { return gnAktivnaAnvelopa; }
    /// Runs the stability combinations dialog over the parameters; 1 when confirmed, and the
    /// parameters are changed only then.
    static int OnStabilnost(void* hParent, CStabilnostParams& params);

private:
    static inline int gnAktivnaAnvelopa = 0;
    static inline int s_nZapamcenaStandardna = 0;
    static inline CId s_idPoslednjeNajavljen;
};
