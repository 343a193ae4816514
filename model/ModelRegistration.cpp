#include "model/ModelRegistration.h"

#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/Skladiste.h"
#include "model/SlucajOpterecenja.h"

void RegisterLoadClasses() {
    CObjBase::RegisterSubBase(new CSlucajOpterecenja, 1);
    CObjBase::RegisterSubBase(new CKombinacijaOpterecenja, 1);
    CObjBase::RegisterSubBase(new CSkladiste, 1);
    CObjBase::RegisterSubBase(new CAnvelopaOpterecenja, 1);
}
