#pragma once
// COpterecenjeInterfaceImp: how the assembly library learns about the load case of a load
// element: which load case it belongs to, moving it to another, and whether a load case
// refuses loads (a missing case, or the influence-line case).
#include "assembly/Opterecenje.h"

class COpterecenjeInterfaceImp : public AOpterecenjeInterface {
public:
    explicit COpterecenjeInterfaceImp(COpterecenje* element) : AOpterecenjeInterface(element) {}
    ~COpterecenjeInterfaceImp() override = default;

    CId GetSlucajOpterecenja() const override;
    void SetSlucajOpterecenja(const CId& id) override;
    /// 1 when the load case with that id cannot be read or is an influence-line case.
    int OdbijaSlucajOpterecenja(int loadCaseId) const override;
};

/// The factory registered with the assembly library: an interface over a load element, null
/// for any other object. The caller owns the result.
AOpterecenjeInterface* OpterecenjeInterfaceFactory(CGraficki* object);
