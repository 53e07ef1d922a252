// SPDX-License-Identifier: Apache-2.0
#include "toolRun.h"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

const char* const theOldModel = R"omd( ; two headers are in use
(DIF (Version 1.3))
(ObjectModel (Name "Old") (VersionNumber "7") (SponsorOrgName "Club") (MOMVersion "1.3")
 (POCFirstName "A.") (POCLastName "Body")
 (ComplexDataType (Name "Place")
  (ComplexComponent (FieldName "X") (DataType "double") (Cardinality "1"))
  (ComplexComponent (FieldName "Y") (DataType "double") (Cardinality "1")))
 (ComplexDataType (Name "Report")
  (ComplexComponent (FieldName "Kind") (DataType "KindEnum8") (Cardinality "1"))
  (ComplexComponent (FieldName "Count") (DataType "octet") (Cardinality "1"))
  (ComplexComponent (FieldName "Sizes") (DataType "short") (Cardinality "1+ (Count)"))
  (ComplexComponent (FieldName "Pad") (DataType "octet") (Cardinality "%4"))
  (ComplexComponent (FieldName "At") (DataType "Place") (Cardinality "0-1 (Kind = Full)")))
 (EnumeratedDataType (Name "KindEnum8")
  (Enumeration (Enumerator "Brief") (Representation 1))
  (Enumeration (Enumerator "Full") (Representation 2)))
 (Class (ID 1) (Name "Car")
  (Attribute (Name "Place") (DataType "Place") (Accuracy "perfect") (TransferAccept TA))
  (Attribute (Name "Speed") (DataType "float") (Cardinality "0+") (TransferAccept Any)))
 (Interaction (ID 1) (Name "Crash") (Parameter (Name "Report") (DataType "Report")))))omd";

std::string ToolRun::content(const std::string& name) const
{
    std::ostringstream content;
    content << std::ifstream(path(name), std::ios::binary).rdbuf();
    return content.str();
}

Outcome ToolRun::run(const std::string& arguments, const std::string& environment)
{
    const std::string command = "cd " + myFolder.path().string() + " && " + environment +
                                " timeout 60 " OMT_TOOL " " + arguments + " >.out 2>.err";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, content(".out"), content(".err")};
}
