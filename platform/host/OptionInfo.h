#pragma once
// Command registration records: the commands and the combo box a module adds to the host's
// command bar. Mode and priority values are the host's own codes, kept as given.
#include "framework/String.h"

#include <memory>
#include <vector>

class COptionInfo;
using OptionFunction = int (*)();
using OptionUpdateFunction = void (*)(COptionInfo& info);

/// Icon handles of the host's toolbar buttons.
struct CButtonST {
    static constexpr int h24IconSlOpt = 1;
    static constexpr int h24IconPrevSlOpt = 2;
    static constexpr int h24IconNextSlOpt = 3;
    static constexpr int h24IconSlOptKomb = 4;
};

class COptionInfo {
public:
    int m_nId = 0;             // command id; 0 for a separator
    CString m_strName;         // menu name
    CString m_strTip;          // tool tip
    int m_nMode = 0;
    OptionFunction m_pFunction = nullptr;
    OptionUpdateFunction m_pUpdate = nullptr;
    int m_nIcon = 0;
    int m_nPriority = 0;
    CString m_strParent;       // the menu the command belongs to
    bool m_bSeparator = false;
    bool m_bCombo = false;
    int m_nComboWidth = 0;

    /// Makes the command a combo box of the given width.
    void SetCombo(int width) {
        m_bCombo = true;
        m_nComboWidth = width;
    }
    /// Called by update functions: whether the command is enabled now.
    void UpdateCommand(int bEnable) { m_bEnabled = bEnable != 0; }
    bool IsEnabled() const { return m_bEnabled; }

private:
    bool m_bEnabled = true;
};

class COptionInfoList {
public:
    /// Appends a new record and returns it; the list keeps it.
    COptionInfo& AddNew();
    int GetSize() const { return static_cast<int>(m_items.size()); }
    COptionInfo& GetAt(int i);
    const COptionInfo& GetAt(int i) const;
    /// The first record with the command id, or null.
    COptionInfo* Find(int id);

private:
    std::vector<std::unique_ptr<COptionInfo>> m_items;
};
