// SPDX-License-Identifier: Apache-2.0
#include "randomValues.h"

#include "modelFiles.h"
#include "ratio.h"

namespace ratios
{

const omt::Model& rpr()
{
    static const omt::Model theModel =
        omt::read({modelPath(theRPR).string()}, omt::ReadOptions().withMim()).model;
    return theModel;
}

const omt::Codec& rprCodec()
{
    static const omt::Codec theCodec(rpr());
    return theCodec;
}

void fillNames()
{
    const auto fill = [](byHand::Names& names, const char* datatype)
    {
        for (const omt::EnumeratedData& data : rpr().tables().enumeratedData)
            if (data.name == datatype)
                for (const omt::Enumerator& one : data.enumerators)
                    names.add(std::stoll(std::string(one.values[0])), one.name);
    };
    byHand::AllNames& names = byHand::names();
    fill(names.algorithm, "DeadReckoningAlgorithmEnum8");
    fill(names.boolean, "RPRboolean");
    fill(names.marking, "MarkingEncodingEnum8");
    fill(names.parameter, "ParameterTypeEnum32");
    fill(names.part, "ArticulatedPartsTypeEnum32");
    fill(names.metric, "ArticulatedTypeMetricEnum32");
    fill(names.station, "StationEnum32");
    fill(names.record, "EnvironmentRecordTypeEnum32");
}

}  // namespace ratios
