#pragma once
// The assembly library's view of loads: a graphical element, the load element (which belongs
// to one load case) and the load interface whose factory the loads module registers.
#include "objbase/Id.h"

#include <memory>

class CGraficki {
public:
    virtual ~CGraficki() = default;
};

class COpterecenje : public CGraficki {
public:
    const CId& GetSlOptId() const { return m_slOptId; }
    void SetSlOptId(const CId& id) { m_slOptId = id; }

private:
    CId m_slOptId;
};

class AOpterecenjeInterface {
public:
    explicit AOpterecenjeInterface(COpterecenje* element) : m_pOpterecenje(element) {}
    virtual ~AOpterecenjeInterface() = default;
    /// The load case of the element.
    virtual CId GetSlucajOpterecenja() const = 0;
    /// Puts the element into a load case.
    virtual void SetSlucajOpterecenja(const CId& id) = 0;
    /// 1 when loads may not be put into the load case with that id, else 0.
    virtual int OdbijaSlucajOpterecenja(int loadCaseId) const = 0;

    using Factory = AOpterecenjeInterface* (*)(CGraficki* object);
    static void RegisterFactory(Factory factory);
    static Factory GetFactory();
    /// The interface for an element through the registered factory; null when there is no
    /// factory or the object is not a load element.
    static std::unique_ptr<AOpterecenjeInterface> Create(CGraficki* object);

protected:
    COpterecenje* m_pOpterecenje;
};
