// SPDX-License-Identifier: Apache-2.0
// A host against the installed libomt: it reads a document and the MIM, builds a model by calls,
// and touches something of every header, so that a symbol left out shows at link time.
#include "omt/base/nearestNames.h"
#include "omt/model/datatypeReferences.h"
#include "omt/model/modelBuilder.h"
#include "omt/model/modelJson.h"
#include "omt/model/read.h"

#include <iostream>
#include <stdexcept>

namespace
{

constexpr const char* theModule =
    R"(<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><objects><objectClass>
<name>HLAobjectRoot</name><objectClass><name>Car</name><attribute><name>Speed</name>
<dataType>HLAfloat64BE</dataType></attribute></objectClass></objectClass></objects></objectModel>)";

bool readsAndShows()
{
    const omt::Reading fom = omt::readDocuments(
        {
            {"car.xml", theModule}
    },
        omt::ReadOptions().withMim());
    for (const omt::Finding& finding : fom.findings) std::cerr << finding << '\n';
    const auto members = fom.model.findMembers("Car.Speed");
    const omt::ObjectClass* const car = fom.model.findObjectClass("Car");
    const omt::Datatype datatype = fom.model.findDatatype("HLAunicodeString");
    int references = 0;
    if (datatype)
        omt::forEachReference(
            datatype, [&](const omt::Text&, const omt::Definition&, omt::Kind) { ++references; });
    return fom.isSound() && members.size() == 1 && car && references == 1 &&
           omt::modelJson(fom.model).find("\"objectClasses\"") != std::string::npos &&
           omt::classJson(fom.model, *car).find("Speed") != std::string::npos &&
           omt::nearestNames("Cra", {"Car", "Van"}).front() == "Car";
}

/// An exception of the library is caught outside of it.
bool refusesAWrongOrder()
{
    omt::ModelBuilder builder;
    builder.tables().objectClasses.resize(1);
    builder.tables().objectClasses[0].parent = 5;
    try
    {
        builder.build();
    }
    catch (const std::invalid_argument&)
    {
        return true;
    }
    return false;
}

}  // namespace

int main()
{
    return readsAndShows() && refusesAWrongOrder() ? 0 : 1;
}
