// SPDX-License-Identifier: Apache-2.0
// Fits the use of services: an edition has some of them, in sections of its own.
#include "omt/model/fitting.h"

#include <algorithm>
#include <iterator>

namespace omt
{

namespace
{

/// A service of the federate interface: its element, and the section that describes it in the
/// interface specification of each edition, empty where the edition does not have it.
struct ServiceRow
{
    std::string_view name;
    std::string_view in2010;
    std::string_view in2025;
    bool isCallback;
};

constexpr ServiceRow theServices[] = {
    {"connect",                                          "4.2",   "4.2",   false},
    {"disconnect",                                       "4.3",   "4.3",   false},
    {"connectionLost",                                   "4.4",   "4.4",   true },
    {"createFederationExecution",                        "4.5",   "4.5",   false},
    {"destroyFederationExecution",                       "4.6",   "4.6",   false},
    {"listFederationExecutions",                         "4.7",   "4.7",   false},
    {"reportFederationExecutions",                       "4.8",   "4.8",   true },
    {"listFederationExecutionMembers",                   "",      "4.9",   false},
    {"reportFederationExecutionMembers",                 "",      "4.10",  true },
    {"joinFederationExecution",                          "4.9",   "4.11",  false},
    {"resignFederationExecution",                        "4.10",  "4.12",  false},
    {"federateResigned",                                 "",      "4.13",  true },
    {"registerFederationSynchronizationPoint",           "4.11",  "4.14",  false},
    {"confirmSynchronizationPointRegistration",          "4.12",  "4.15",  true },
    {"announceSynchronizationPoint",                     "4.13",  "4.16",  true },
    {"synchronizationPointAchieved",                     "4.14",  "4.17",  false},
    {"federationSynchronized",                           "4.15",  "4.18",  true },
    {"requestFederationSave",                            "4.16",  "4.19",  false},
    {"initiateFederateSave",                             "4.17",  "4.20",  true },
    {"federateSaveBegun",                                "4.18",  "4.21",  false},
    {"federateSaveComplete",                             "4.19",  "4.22",  false},
    {"federationSaved",                                  "4.20",  "4.23",  true },
    {"abortFederationSave",                              "4.21",  "4.24",  false},
    {"queryFederationSaveStatus",                        "4.22",  "4.25",  false},
    {"federationSaveStatusResponse",                     "4.23",  "4.26",  true },
    {"requestFederationRestore",                         "4.24",  "4.27",  false},
    {"confirmFederationRestorationRequest",              "4.25",  "4.28",  true },
    {"federationRestoreBegun",                           "4.26",  "4.29",  true },
    {"initiateFederateRestore",                          "4.27",  "4.30",  true },
    {"federateRestoreComplete",                          "4.28",  "4.31",  false},
    {"federationRestored",                               "4.29",  "4.32",  true },
    {"abortFederationRestore",                           "4.30",  "4.33",  false},
    {"queryFederationRestoreStatus",                     "4.31",  "4.34",  false},
    {"federationRestoreStatusResponse",                  "4.32",  "4.35",  true },
    {"publishObjectClassAttributes",                     "5.2",   "5.2",   false},
    {"unpublishObjectClassAttributes",                   "5.3",   "5.3",   false},
    {"publishInteractionClass",                          "5.4",   "5.4",   false},
    {"unpublishInteractionClass",                        "5.5",   "5.5",   false},
    {"publishObjectClassDirectedInteractions",           "",      "5.6",   false},
    {"unpublishObjectClassDirectedInteractions",         "",      "5.7",   false},
    {"subscribeObjectClassAttributes",                   "5.6",   "5.8",   false},
    {"unsubscribeObjectClassAttributes",                 "5.7",   "5.9",   false},
    {"subscribeInteractionClass",                        "5.8",   "5.10",  false},
    {"unsubscribeInteractionClass",                      "5.9",   "5.11",  false},
    {"subscribeObjectClassDirectedInteractions",         "",      "5.12",  false},
    {"unsubscribeObjectClassDirectedInteractions",       "",      "5.13",  false},
    {"startRegistrationForObjectClass",                  "5.10",  "5.14",  true },
    {"stopRegistrationForObjectClass",                   "5.11",  "5.15",  true },
    {"turnInteractionsOn",                               "5.12",  "5.16",  true },
    {"turnInteractionsOff",                              "5.13",  "5.17",  true },
    {"reserveObjectInstanceName",                        "6.2",   "6.2",   false},
    {"objectInstanceNameReserved",                       "6.3",   "6.3",   true },
    {"releaseObjectInstanceName",                        "6.4",   "6.4",   false},
    {"reserveMultipleObjectInstanceNames",               "6.5",   "6.5",   false},
    {"multipleObjectInstanceNamesReserved",              "6.6",   "6.6",   true },
    {"releaseMultipleObjectInstanceNames",               "6.7",   "6.7",   false},
    {"registerObjectInstance",                           "6.8",   "6.8",   false},
    {"discoverObjectInstance",                           "6.9",   "6.9",   true },
    {"updateAttributeValues",                            "6.10",  "6.10",  false},
    {"reflectAttributeValues",                           "6.11",  "6.11",  true },
    {"sendInteraction",                                  "6.12",  "6.12",  false},
    {"receiveInteraction",                               "6.13",  "6.13",  true },
    {"sendDirectedInteraction",                          "",      "6.14",  false},
    {"receiveDirectedInteraction",                       "",      "6.15",  true },
    {"deleteObjectInstance",                             "6.14",  "6.16",  false},
    {"removeObjectInstance",                             "6.15",  "6.17",  true },
    {"localDeleteObjectInstance",                        "6.16",  "6.18",  false},
    {"attributesInScope",                                "6.17",  "6.19",  true },
    {"attributesOutOfScope",                             "6.18",  "6.20",  true },
    {"requestAttributeValueUpdate",                      "6.19",  "6.21",  false},
    {"provideAttributeValueUpdate",                      "6.20",  "6.22",  true },
    {"turnUpdatesOnForObjectInstance",                   "6.21",  "6.23",  true },
    {"turnUpdatesOffForObjectInstance",                  "6.22",  "6.24",  true },
    {"requestAttributeTransportationTypeChange",         "6.23",  "6.25",  false},
    {"confirmAttributeTransportationTypeChange",         "6.24",  "6.26",  true },
    {"changeDefaultAttributeTransportationType",         "",      "6.27",  false},
    {"queryAttributeTransportationType",                 "6.25",  "6.28",  false},
    {"reportAttributeTransportationType",                "6.26",  "6.29",  true },
    {"requestInteractionTransportationTypeChange",       "6.27",  "6.30",  false},
    {"confirmInteractionTransportationTypeChange",       "6.28",  "6.31",  true },
    {"queryInteractionTransportationType",               "6.29",  "6.32",  false},
    {"reportInteractionTransportationType",              "6.30",  "6.33",  true },
    {"unconditionalAttributeOwnershipDivestiture",       "7.2",   "7.2",   false},
    {"negotiatedAttributeOwnershipDivestiture",          "7.3",   "7.3",   false},
    {"requestAttributeOwnershipAssumption",              "7.4",   "7.4",   true },
    {"requestDivestitureConfirmation",                   "7.5",   "7.5",   true },
    {"confirmDivestiture",                               "7.6",   "7.6",   false},
    {"attributeOwnershipAcquisitionNotification",        "7.7",   "7.7",   true },
    {"attributeOwnershipAcquisition",                    "7.8",   "7.8",   false},
    {"attributeOwnershipAcquisitionIfAvailable",         "7.9",   "7.9",   false},
    {"attributeOwnershipUnavailable",                    "7.10",  "7.10",  true },
    {"requestAttributeOwnershipRelease",                 "7.11",  "7.11",  true },
    {"attributeOwnershipReleaseDenied",                  "7.12",  "7.12",  false},
    {"attributeOwnershipDivestitureIfWanted",            "7.13",  "7.13",  false},
    {"cancelNegotiatedAttributeOwnershipDivestiture",    "7.14",  "7.14",  false},
    {"cancelAttributeOwnershipAcquisition",              "7.15",  "7.15",  false},
    {"confirmAttributeOwnershipAcquisitionCancellation", "7.16",  "7.16",  true },
    {"queryAttributeOwnership",                          "7.17",  "7.17",  false},
    {"informAttributeOwnership",                         "7.18",  "7.18",  true },
    {"isAttributeOwnedByFederate",                       "7.19",  "7.19",  false},
    {"enableTimeRegulation",                             "8.2",   "8.2",   false},
    {"timeRegulationEnabled",                            "8.3",   "8.3",   true },
    {"disableTimeRegulation",                            "8.4",   "8.4",   false},
    {"enableTimeConstrained",                            "8.5",   "8.5",   false},
    {"timeConstrainedEnabled",                           "8.6",   "8.6",   true },
    {"disableTimeConstrained",                           "8.7",   "8.7",   false},
    {"timeAdvanceRequest",                               "8.8",   "8.8",   false},
    {"timeAdvanceRequestAvailable",                      "8.9",   "8.9",   false},
    {"nextMessageRequest",                               "8.10",  "8.10",  false},
    {"nextMessageRequestAvailable",                      "8.11",  "8.11",  false},
    {"flushQueueRequest",                                "8.12",  "8.12",  false},
    {"flushQueueGrant",                                  "",      "8.13",  true },
    {"timeAdvanceGrant",                                 "8.13",  "8.14",  true },
    {"enableAsynchronousDelivery",                       "8.14",  "8.15",  false},
    {"disableAsynchronousDelivery",                      "8.15",  "8.16",  false},
    {"queryGALT",                                        "8.16",  "8.17",  false},
    {"queryLogicalTime",                                 "8.17",  "8.18",  false},
    {"queryLITS",                                        "8.18",  "8.19",  false},
    {"modifyLookahead",                                  "8.19",  "8.20",  false},
    {"queryLookahead",                                   "8.20",  "8.21",  false},
    {"retract",                                          "8.21",  "8.22",  false},
    {"requestRetraction",                                "8.22",  "8.23",  true },
    {"changeAttributeOrderType",                         "8.23",  "8.24",  false},
    {"changeDefaultAttributeOrderType",                  "",      "8.25",  false},
    {"changeInteractionOrderType",                       "8.24",  "8.26",  false},
    {"createRegion",                                     "9.2",   "9.2",   false},
    {"commitRegionModifications",                        "9.3",   "9.3",   false},
    {"deleteRegion",                                     "9.4",   "9.4",   false},
    {"registerObjectInstanceWithRegions",                "9.5",   "9.5",   false},
    {"associateRegionsForUpdates",                       "9.6",   "9.6",   false},
    {"unassociateRegionsForUpdates",                     "9.7",   "9.7",   false},
    {"subscribeObjectClassAttributesWithRegions",        "9.8",   "9.8",   false},
    {"unsubscribeObjectClassAttributesWithRegions",      "9.9",   "9.9",   false},
    {"subscribeInteractionClassWithRegions",             "9.10",  "9.10",  false},
    {"unsubscribeInteractionClassWithRegions",           "9.11",  "9.11",  false},
    {"sendInteractionWithRegions",                       "9.12",  "9.12",  false},
    {"requestAttributeValueUpdateWithRegions",           "9.13",  "9.13",  false},
    {"getFederateHandle",                                "10.4",  "10.2",  false},
    {"getFederateName",                                  "10.5",  "10.3",  false},
    {"getObjectClassHandle",                             "10.6",  "10.4",  false},
    {"getObjectClassName",                               "10.7",  "10.5",  false},
    {"getKnownObjectClassHandle",                        "10.8",  "10.6",  false},
    {"getObjectInstanceHandle",                          "10.9",  "10.7",  false},
    {"getObjectInstanceName",                            "10.10", "10.8",  false},
    {"getAttributeHandle",                               "10.11", "10.9",  false},
    {"getAttributeName",                                 "10.12", "10.10", false},
    {"getUpdateRateValue",                               "10.13", "10.11", false},
    {"getUpdateRateValueForAttribute",                   "10.14", "10.12", false},
    {"getInteractionClassHandle",                        "10.15", "10.13", false},
    {"getInteractionClassName",                          "10.16", "10.14", false},
    {"getParameterHandle",                               "10.17", "10.15", false},
    {"getParameterName",                                 "10.18", "10.16", false},
    {"getOrderType",                                     "10.19", "10.17", false},
    {"getOrderName",                                     "10.20", "10.18", false},
    {"getTransportationTypeHandle",                      "10.21", "10.19", false},
    {"getTransportationTypeName",                        "10.22", "10.20", false},
    {"getAvailableDimensionsForObjectClass",             "",      "10.21", false},
    {"getAvailableDimensionsForInteractionClass",        "10.24", "10.22", false},
    {"getDimensionHandle",                               "10.25", "10.23", false},
    {"getDimensionName",                                 "10.26", "10.24", false},
    {"getDimensionUpperBound",                           "10.27", "10.25", false},
    {"getDimensionHandleSet",                            "10.28", "10.26", false},
    {"getRangeBounds",                                   "10.29", "10.27", false},
    {"setRangeBounds",                                   "10.30", "10.28", false},
    {"normalizeServiceGroup",                            "10.32", "10.29", false},
    {"normalizeFederateHandle",                          "10.31", "10.30", false},
    {"normalizeObjectClassHandle",                       "",      "10.31", false},
    {"normalizeInteractionClassHandle",                  "",      "10.32", false},
    {"normalizeObjectInstanceHandle",                    "",      "10.33", false},
    {"getObjectClassRelevanceAdvisorySwitch",            "",      "10.34", false},
    {"setObjectClassRelevanceAdvisorySwitch",            "",      "10.35", false},
    {"getAttributeRelevanceAdvisorySwitch",              "",      "10.36", false},
    {"setAttributeRelevanceAdvisorySwitch",              "",      "10.37", false},
    {"getAttributeScopeAdvisorySwitch",                  "",      "10.38", false},
    {"setAttributeScopeAdvisorySwitch",                  "",      "10.39", false},
    {"getInteractionRelevanceAdvisorySwitch",            "",      "10.40", false},
    {"setInteractionRelevanceAdvisorySwitch",            "",      "10.41", false},
    {"getConveyRegionDesignatorSetsSwitch",              "",      "10.42", false},
    {"setConveyRegionDesignatorSetsSwitch",              "",      "10.43", false},
    {"getAutomaticResignDirective",                      "10.2",  "10.44", false},
    {"setAutomaticResignDirective",                      "10.3",  "10.45", false},
    {"getServiceReportingSwitch",                        "",      "10.46", false},
    {"setServiceReportingSwitch",                        "",      "10.47", false},
    {"getExceptionReportingSwitch",                      "",      "10.48", false},
    {"setExceptionReportingSwitch",                      "",      "10.49", false},
    {"getSendServiceReportsToFileSwitch",                "",      "10.50", false},
    {"setSendServiceReportsToFileSwitch",                "",      "10.51", false},
    {"getAutoProvideSwitch",                             "",      "10.52", false},
    {"getDelaySubscriptionEvaluationSwitch",             "",      "10.53", false},
    {"getAdvisoriesUseKnownClassSwitch",                 "",      "10.54", false},
    {"getAllowRelaxedDDMSwitch",                         "",      "10.55", false},
    {"getNonRegulatedGrantSwitch",                       "",      "10.56", false},
    {"evokeCallback",                                    "10.41", "10.57", false},
    {"evokeMultipleCallbacks",                           "10.42", "10.58", false},
    {"enableCallbacks",                                  "10.43", "10.59", false},
    {"disableCallbacks",                                 "10.44", "10.60", false},
    {"getAvailableDimensionsForClassAttribute",          "10.23", "",      false},
    {"enableObjectClassRelevanceAdvisorySwitch",         "10.33", "",      false},
    {"disableObjectClassRelevanceAdvisorySwitch",        "10.34", "",      false},
    {"enableAttributeRelevanceAdvisorySwitch",           "10.35", "",      false},
    {"disableAttributeRelevanceAdvisorySwitch",          "10.36", "",      false},
    {"enableAttributeScopeAdvisorySwitch",               "10.37", "",      false},
    {"disableAttributeScopeAdvisorySwitch",              "10.38", "",      false},
    {"enableInteractionRelevanceAdvisorySwitch",         "10.39", "",      false},
    {"disableInteractionRelevanceAdvisorySwitch",        "10.40", "",      false},
};

/// The schema of 2010 has this one word without capitals.
constexpr std::string_view theRemoveWord2010 = "removeobjectinstance";

bool isSameService(std::string_view left, std::string_view right)
{
    return left == right || (left == theRemoveWord2010 && right == "removeObjectInstance");
}

}  // namespace

void Fitting::fitServices()
{
    const auto fit = [this](Service& service)
    {
        const auto* const row = std::find_if(std::begin(theServices), std::end(theServices),
                                             [&](const ServiceRow& each)
                                             { return isSameService(service.name, each.name); });
        const bool isKnown = row != std::end(theServices);
        const std::string_view section = !isKnown  ? std::string_view()
                                         : isNew() ? row->in2025
                                                   : row->in2010;
        if (section.empty())
        {
            lose(service, service.name, "the service `" + service.name.str() + "`");
            return true;
        }
        service.name =
            text(!isNew() && row->name == "removeObjectInstance" ? theRemoveWord2010 : row->name,
                 service.name);
        if (service.section != section) service.section = text(section, service.section);
        const std::string_view isCallback = row->isCallback ? "true" : "false";
        if (service.isCallback != isCallback)
            service.isCallback = text(isCallback, service.isCallback);
        return false;
    };
    std::vector<Service>& services = tables().services;
    services.erase(std::remove_if(services.begin(), services.end(), fit), services.end());
}

}  // namespace omt
