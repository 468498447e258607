// Every text, event and parameter of the module, each known to the framework by its key.
//
// One list names them all in the order of their creation; the framework lists, translates and
// reports them in that order, so it must not depend on how a program was linked.
#pragma once

#include <tesk5/DiagModule.h>

// TEXT(variable, key) and EVENT(variable, key), as created before the tests. "SIGNAL_QUALITY" and
// "NETWORK_CONFIGURATION_ERROR" are read by no code: creating them makes them known to translators
// and hosts.
#define MRLRANTENNA_OBJECTS_BEFORE_TESTS(TEXT, EVENT)                                              \
    TEXT(title, "TITLE")                                                                           \
    TEXT(networkAdapter, "NETWORK_ADAPTER")                                                        \
    TEXT(availableNetworks, "AVAILABLE_NETWORKS")                                                  \
    TEXT(bssType, "BSS_TYPE")                                                                      \
    TEXT(security, "SECURITY")                                                                     \
    TEXT(connectable, "CONNECTABLE")                                                               \
    TEXT(signalQuality, "SIGNAL_QUALITY")                                                          \
    TEXT(authentication, "AUTHENTICATION")                                                         \
    TEXT(signalStrength, "SIGNAL_STRENGTH")                                                        \
    TEXT(validState, "VALID_STATE")                                                                \
    TEXT(finish, "FINISH")                                                                         \
    TEXT(instructions1, "INSTRUCTIONS_1")                                                          \
    TEXT(cipher, "CIPHER")                                                                         \
    TEXT(turnRadioOn, "TURN_RADIO_ON")                                                             \
    TEXT(turnRadioOff, "TURN_RADIO_OFF")                                                           \
    TEXT(radioButtonOff, "RADIO_BUTTON_OFF")                                                       \
    TEXT(radioButtonOn, "RADIO_BUTTON_ON")                                                         \
    TEXT(hardwareSwitchOff, "HARDWARE_SWITCH_OFF")                                                 \
    TEXT(radioStateUnknown, "RADIO_STATE_UNKNOWN")                                                 \
    EVENT(warningEvent, "WARNING_EVENT")                                                           \
    EVENT(networkConfigurationError, "NETWORK_CONFIGURATION_ERROR")                                \
    EVENT(errorNdisDot11PowerStateInvalid, "ERROR_NDIS_DOT11_POWER_STATE_INVALID")                 \
    EVENT(errorNotEnoughMemory, "ERROR_NOT_ENOUGH_MEMORY")                                         \
    TEXT(errorInvalidState, "ERROR_INVALID_STATE")                                                 \
    TEXT(enabled, "ENABLED")                                                                       \
    TEXT(notEnabled, "NOT_ENABLED")                                                                \
    TEXT(yes, "YES")                                                                               \
    TEXT(no, "NO")                                                                                 \
    TEXT(infrastructure, "INFRASTRUCTURE")                                                         \
    TEXT(adHocIndependent, "AD_HOC_INDEPENDENT")                                                   \
    TEXT(any, "ANY")                                                                               \
    TEXT(unknownBssType, "UNKNOWN_BSS_TYPE")                                                       \
    TEXT(authenticationOpen, "AUTHENTICATION_OPEN")                                                \
    TEXT(authenticationSharedKey, "AUTHENTICATION_SHARED_KEY")                                     \
    TEXT(unknownAuthenticationAlgorithm, "UNKNOWN_AUTHENTICATION_ALGORITHM")

// PARAMETER(variable, name, type), as created after the tests.
#define MRLRANTENNA_PARAMETERS(PARAMETER)                                                          \
    PARAMETER(ssid, "SSID", STRING)                                                                \
    PARAMETER(warningSignalStrength, "WarningSignalStrength", UINT32)                              \
    PARAMETER(failingSignalStrength, "FailingSignalStrength", UINT32)

// As created after the parameters, up to the application object. The two retry prompts are read by
// no code either.
#define MRLRANTENNA_OBJECTS_BEFORE_APPLICATION(TEXT, EVENT)                                        \
    EVENT(ssidNotSet, "SSID_NOT_SET")                                                              \
    EVENT(noAccessPointFound, "NO_ACCESS_POINT_FOUND")                                             \
    EVENT(accessPointNotFound, "ACCESS_POINT_NOT_FOUND")                                           \
    EVENT(warnAndFailSignalStrengthSetZero, "WARN_AND_FAIL_SIGNAL_STRENGTH_SET_ZERO")              \
    EVENT(paramOutOfRange, "PARAM_OUT_OF_RANGE")                                                   \
    EVENT(failSignalStrengthHigherThanWarn, "FAIL_SIGNAL_STRENGTH_HIGHER_THAN_WARN")               \
    EVENT(failingSignalStrengthDetected, "FAILING_SIGNAL_STRENGTH_DETECTED")                       \
    TEXT(retryPromptTitle, "RETRY_PROMPT_TITLE")                                                   \
    TEXT(retryPromptMessage, "RETRY_PROMPT_MESSAGE")

// The words for a signal quality, as created after the application object.
#define MRLRANTENNA_SIGNAL_QUALITY_WORDS(TEXT)                                                     \
    TEXT(excellent, "EXCELLENT")                                                                   \
    TEXT(veryGood, "VERY_GOOD")                                                                    \
    TEXT(good, "GOOD")                                                                             \
    TEXT(low, "LOW")                                                                               \
    TEXT(veryLow, "VERY_LOW")                                                                      \
    TEXT(noSignal, "NO_SIGNAL")

#define MRLRANTENNA_DECLARE_TEXT(variable, key) extern tesk5::LocalizedString* const variable;
#define MRLRANTENNA_DECLARE_EVENT(variable, key) extern tesk5::Event* const variable;
#define MRLRANTENNA_DECLARE_PARAMETER(variable, name, type) extern tesk5::Parameter* const variable;
#define MRLRANTENNA_IGNORE(variable, key)

/// The localized strings, each under its key in mixed case. Owned by the framework, alive until the
/// process ends; not to be read before all static objects exist.
namespace texts {
MRLRANTENNA_OBJECTS_BEFORE_TESTS(MRLRANTENNA_DECLARE_TEXT, MRLRANTENNA_IGNORE)
MRLRANTENNA_OBJECTS_BEFORE_APPLICATION(MRLRANTENNA_DECLARE_TEXT, MRLRANTENNA_IGNORE)
MRLRANTENNA_SIGNAL_QUALITY_WORDS(MRLRANTENNA_DECLARE_TEXT)

/// The current text of a localized string as a Basekit string.
inline const mrl::String& get(const tesk5::LocalizedString* text) {
    return text->localizedString().mrlString();
}
} // namespace texts

/// The events, likewise.
namespace events {
MRLRANTENNA_OBJECTS_BEFORE_TESTS(MRLRANTENNA_IGNORE, MRLRANTENNA_DECLARE_EVENT)
MRLRANTENNA_OBJECTS_BEFORE_APPLICATION(MRLRANTENNA_IGNORE, MRLRANTENNA_DECLARE_EVENT)
} // namespace events

/// The parameters of the verification test, likewise.
namespace parameters {
MRLRANTENNA_PARAMETERS(MRLRANTENNA_DECLARE_PARAMETER)
} // namespace parameters

#undef MRLRANTENNA_DECLARE_TEXT
#undef MRLRANTENNA_DECLARE_EVENT
#undef MRLRANTENNA_DECLARE_PARAMETER
#undef MRLRANTENNA_IGNORE

/// The verification test, to which initializeModule() attaches its parameters.
extern tesk5::Test* const signalStrengthTest;
