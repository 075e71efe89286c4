#pragma once

#include <array>
#include <cstddef>

/// The fields of a connection record.
namespace qvtc::connections {

/// A field's place in the record; the order is that of storing and listing.
enum class Field : std::size_t {
    id,
    type,
    name,
    serverAddress,
    port,
    sport,
    password,
    selectCertificate,
    downloadUrl,
    autoConnect,
    rememberMe,
    username,
    disconnectRetry,
    redirectAudio,
    useCompress,
    domain,
    isConnectStart,
    appFullpath,
    workDir,
    colorDepth,
    desktopBackground,
    fontSmooth,
    desktopLayout,
    visualStyle,
    persistBitmap,
    rdpPort,
    dragShowContent,
    widgetAnimate,
    useRemoteFX,
    localStorage,
    useNLA,
    useSport,
    useCustomRDPPort,
    useRedirect,
    disableAll,
    desktop,
    audioPlayOnServer,
    useRdGateway,
    rdGatewayAddress,
    rdGatewayUseRemoteAccount,
    rdGatewayUsername,
    rdGatewayPassword,
    rdGatewayDomain,
    monitorSelect,
    multimedia,
    printer,
    vmwareProtocol,
    isUseSGW,
    usbRedirection,
    multiTouch,
    useGFX,
};

inline constexpr std::size_t field_count = 51;
static_assert(static_cast<std::size_t>(Field::useGFX) + 1 == field_count);

/// Longest value of a field, in bytes.
inline constexpr std::size_t field_limit = 63;

/// The names of the fields, as they are stored; indexed by Field.
inline constexpr std::array<const char*, field_count> field_names = {
    "id",
    "type",
    "name",
    "serverAddress",
    "port",
    "sport",
    "password",
    "selectCertificate",
    "downloadUrl",
    "autoConnect",
    "rememberMe",
    "username",
    "disconnectRetry",
    "redirectAudio",
    "useCompress",
    "domain",
    "isConnectStart",
    "appFullpath",
    "workDir",
    "colorDepth",
    "desktopBackground",
    "fontSmooth",
    "desktopLayout",
    "visualStyle",
    "persistBitmap",
    "rdpPort",
    "dragShowContent",
    "widgetAnimate",
    "useRemoteFX",
    "localStorage",
    "useNLA",
    "useSport",
    "useCustomRDPPort",
    "useRedirect",
    "disableAll",
    "desktop",
    "audioPlayOnServer",
    "useRdGateway",
    "rdGatewayAddress",
    "rdGatewayUseRemoteAccount",
    "rdGatewayUsername",
    "rdGatewayPassword",
    "rdGatewayDomain",
    "monitorSelect",
    "multimedia",
    "printer",
    "vmwareProtocol",
    "isUseSGW",
    "usbRedirection",
    "multiTouch",
    "useGFX",
};

constexpr const char* name_of(Field field) { return field_names[static_cast<std::size_t>(field)]; }

} // namespace qvtc::connections
