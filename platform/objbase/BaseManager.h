#pragma once
// CBaseManager: a typed view of the document's object base.
//
// A view is opened for reading or for writing and closed again (the destructor closes a view
// left open). Select chooses the type to walk (in store order, or SelectSorted in ascending id
// order); GetFirst and GetNext walk the selection as it was when selected, skipping objects
// deleted since. GetR gives an object to read, GetW one to change (only in a writing view; the
// change becomes part of the undo step), Insert and Delete add and remove objects.
#include "objbase/ObjBase.h"

#include <vector>

class CBaseManager {
public:
    /// Type numbers of the object store. The host's own classes come first; the loads
    /// module's classes have fixed numbers of their own. These numbers are written into model
    /// files and never change.
    enum : int {
        ModelType = 1,
        TackastoOpterecenjeType = 2,
        LinijskoOpterecenjeType = 3,
        PovrsinskoOpterecenjeType = 4,
        PrednaprezanjeType = 5,
        PokretnoOpterecenjeType = 6,
        PomeranjeCvoraType = 7,
        TempUticajUGredi = 8,
        TempUticajUPloci = 9,
        AksijalnoNaprezanjeType = 10,
        UticajnaLinijaLinijskaType = 11,
        UticajnaLinijaTackastaType = 12,
        SlucajOpterecenjaType = 20,
        KombinacijaOpterecenjaType = 21,
        SkladisteType = 22,
        AnvelopaOpterecenjaType = 23,
    };
    enum OpenMode : int { Read = 0, Write = 1 };

    /// A view of the given base, or of the current document's base when none is given; type
    /// is the type that Count() and a Select without arguments use (0: none).
    explicit CBaseManager(int type = 0, CObjBase* base = nullptr);
    ~CBaseManager();
    CBaseManager(const CBaseManager&) = delete;
    CBaseManager& operator=(const CBaseManager&) = delete;

    /// Opens for reading or writing; 1 on success, 0 when there is no object base or the view
    /// is already open.
    int Open(int mode);
    /// The store's check of an opening: a failed one ends the program ("bOpenOK").
    static void AssertOpenOK(int bOpenOK);
    void Close();
    bool IsOpen() const { return m_open; }
    bool IsWrite() const { return m_open && m_mode == Write; }

    int Select(int type);
    int Select() { return Select(m_type); }
    int SelectSorted(int type);
    /// The first (next) id of the selection, or an invalid id at its end.
    CId GetFirst();
    CId GetNext();

    /// The object to read, or null when there is none with that id.
    const CObj* GetR(const CId& id) const;
    /// The object to change, or null; asserts "IsWrite ()" in a view not opened for writing.
    CObj* GetW(const CId& id);
    /// Stores a pooled object (the store takes it over) and gives it a new id, which it returns.
    /// Like Delete and DeleteAll, only in a view opened for writing (asserts "IsWrite ()").
    CId Insert(CObj* obj);
    /// Deletes the object; false when there is none with that id.
    bool Delete(const CId& id);
    /// Puts a new pooled object of the same type (taken over) in place of the stored one with
    /// that id, which it takes with its place in the store order. The old object itself is
    /// what undo brings back, so a change that builds the new object cheaply costs no record
    /// image. False (and obj destroyed) when there is no object with that id.
    bool Replace(const CId& id, CObj* obj);
    /// Deletes every object of the type; returns how many.
    int DeleteAll(int type);

    /// Objects of the view's type (or of the last selected type).
    int Count() const;
    int Count(int type) const;
    int GetObjTypeCount(int type) const { return Count(type); }

    /// Freezing forwards to the base; freezes this view has not undone are undone at Close.
    void FreezeUndoCounter();
    void UnfreezeUndoCounter();

    CObjBase* Base() const { return m_base; }

private:
    CObjBase* m_base;
    int m_type;
    int m_selType = 0;
    bool m_open = false;
    int m_mode = Read;
    int m_frozenHere = 0;
    std::vector<CId> m_selection;
    size_t m_cursor = 0;
};
