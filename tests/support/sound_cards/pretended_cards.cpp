// Loaded into aplay and amixer, this answers what they ask the kernel about sound cards: it takes
// the place of open, close and ioctl for "/dev/snd/controlC*". Nothing is ever heard.
#include "card_file.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <exception>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <linux/ioctl.h> // the requests are made of its macros
#include <map>
#include <sound/asound.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

using qvtc::test::Card;
using qvtc::test::CardControl;
using qvtc::test::CardDevice;

/// A C library function that is hidden behind ours.
template <typename Function>
Function* behind(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::map<int, Card>& open_cards() {
    static std::map<int, Card> cards;
    return cards;
}

template <std::size_t Size, typename Byte>
void put(Byte (&field)[Size], const std::string& text) {
    std::snprintf(reinterpret_cast<char*>(field), Size, "%s", text.c_str());
}

// --- Opening -----------------------------------------------------------------------------------

/// The card of a control device's path; -1 for any other path.
int card_of(const char* path) {
    int card = -1;
    return std::sscanf(path, "/dev/snd/controlC%d", &card) == 1 ? card : -1;
}

int open_card(unsigned number) {
    const std::string path = qvtc::test::card_file(number);
    const int descriptor = behind<int(const char*, int, ...)>("open")(path.c_str(), O_RDONLY);
    if (descriptor < 0) return -1;
    try {
        std::ifstream file(path);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        open_cards()[descriptor] = qvtc::test::read_card(number, text);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", path.c_str(), error.what());
        _exit(99);
    }
    return descriptor;
}

int open_any(const char* name, const char* path, int flags, mode_t mode) {
    const int card = card_of(path);
    if (card >= 0) return open_card(static_cast<unsigned>(card));
    return behind<int(const char*, int, ...)>(name)(path, flags, mode);
}

// --- Values ------------------------------------------------------------------------------------

// They outlive the program in a file that holds how far each is from its first value, so that a
// value that was never written needs no place in it.

constexpr std::size_t most_channels = 8;

off_t place_of(std::size_t control, std::size_t channel) {
    return static_cast<off_t>((control * most_channels + channel) * sizeof(std::int64_t));
}

std::int64_t stored_difference(const Card& card, std::size_t control, std::size_t channel) {
    std::int64_t difference = 0;
    const std::string path = qvtc::test::card_values_file(card.number);
    const int file = behind<int(const char*, int, ...)>("open")(path.c_str(), O_RDONLY);
    if (file < 0) return 0;
    if (pread(file, &difference, sizeof difference, place_of(control, channel)) < 0) difference = 0;
    behind<int(int)>("close")(file);
    return difference;
}

void store_difference(const Card& card, std::size_t control, std::size_t channel,
                      std::int64_t difference) {
    const std::string path = qvtc::test::card_values_file(card.number);
    const int file =
        behind<int(const char*, int, ...)>("open")(path.c_str(), O_WRONLY | O_CREAT, 0600);
    if (pwrite(file, &difference, sizeof difference, place_of(control, channel)) < 0)
        std::perror(path.c_str());
    behind<int(int)>("close")(file);
}

long value_of(const Card& card, std::size_t control, std::size_t channel) {
    return card.controls[control].first + stored_difference(card, control, channel);
}

// --- What the kernel is asked ------------------------------------------------------------------

int refuse(int error) {
    errno = error;
    return -1;
}

int tell_card(const Card& card, snd_ctl_card_info& info) {
    info = {};
    info.card = static_cast<int>(card.number);
    put(info.id, card.id);
    put(info.driver, "Pretended");
    put(info.name, card.name);
    put(info.longname, card.name);
    put(info.mixername, card.name);
    return 0;
}

int tell_next_device(const Card& card, int& device) {
    const auto next =
        std::find_if(card.devices.begin(), card.devices.end(), [&](const CardDevice& each) {
            return static_cast<int>(each.number) > device;
        });
    device = next == card.devices.end() ? -1 : static_cast<int>(next->number);
    return 0;
}

int tell_device(const Card& card, snd_pcm_info& info) {
    const auto device =
        std::find_if(card.devices.begin(), card.devices.end(),
                     [&](const CardDevice& each) { return each.number == info.device; });
    if (device == card.devices.end() || info.stream != SNDRV_PCM_STREAM_PLAYBACK)
        return refuse(ENOENT);
    info.card = static_cast<int>(card.number);
    put(info.id, device->name);
    put(info.name, device->name);
    put(info.subname, "subdevice #0");
    info.subdevices_count = info.subdevices_avail = 1;
    return 0;
}

snd_ctl_elem_id id_of(const Card& card, std::size_t control) {
    snd_ctl_elem_id id{};
    id.numid = static_cast<unsigned>(control) + 1;
    id.iface = SNDRV_CTL_ELEM_IFACE_MIXER;
    put(id.name, card.controls[control].name);
    return id;
}

/// The place of a control, that is named by its number or by its name; -1 without one.
std::ptrdiff_t find_control(const Card& card, const snd_ctl_elem_id& id) {
    for (std::size_t i = 0; i < card.controls.size(); ++i) {
        const bool named = card.controls[i].name == reinterpret_cast<const char*>(id.name);
        if (id.numid != 0 ? id.numid == i + 1 : named) return static_cast<std::ptrdiff_t>(i);
    }
    return -1;
}

int tell_controls(const Card& card, snd_ctl_elem_list& list) {
    list.count = static_cast<unsigned>(card.controls.size());
    list.used = 0;
    for (std::size_t i = list.offset; i < card.controls.size() && list.used < list.space; ++i)
        list.pids[list.used++] = id_of(card, i);
    return 0;
}

int tell_control(const Card& card, snd_ctl_elem_info& info) {
    const std::ptrdiff_t at = find_control(card, info.id);
    if (at < 0) return refuse(ENOENT);
    const CardControl& control = card.controls[static_cast<std::size_t>(at)];
    const unsigned asked_item = info.value.enumerated.item;
    const snd_ctl_elem_id id = id_of(card, static_cast<std::size_t>(at));
    info = {};
    info.id = id;
    info.access = SNDRV_CTL_ELEM_ACCESS_READWRITE;
    info.count = control.channels;
    switch (control.kind) {
    case CardControl::Kind::switched:
        info.type = SNDRV_CTL_ELEM_TYPE_BOOLEAN;
        info.value.integer.max = 1;
        break;
    case CardControl::Kind::volume:
        info.type = SNDRV_CTL_ELEM_TYPE_INTEGER;
        info.value.integer.min = control.least;
        info.value.integer.max = control.most;
        break;
    case CardControl::Kind::choice:
        info.type = SNDRV_CTL_ELEM_TYPE_ENUMERATED;
        info.value.enumerated.items = static_cast<unsigned>(control.choices.size());
        info.value.enumerated.item = std::min(asked_item, info.value.enumerated.items - 1);
        put(info.value.enumerated.name, control.choices.at(info.value.enumerated.item));
        break;
    }
    return 0;
}

int tell_value(const Card& card, snd_ctl_elem_value& value) {
    const std::ptrdiff_t at = find_control(card, value.id);
    if (at < 0) return refuse(ENOENT);
    const auto control = static_cast<std::size_t>(at);
    value.id = id_of(card, control);
    const bool is_choice = card.controls[control].kind == CardControl::Kind::choice;
    for (std::size_t i = 0; i < card.controls[control].channels; ++i) {
        const long current = value_of(card, control, i);
        if (is_choice) {
            value.value.enumerated.item[i] = static_cast<unsigned>(current);
        } else {
            value.value.integer.value[i] = current;
        }
    }
    return 0;
}

int take_value(const Card& card, const snd_ctl_elem_value& value) {
    const std::ptrdiff_t at = find_control(card, value.id);
    if (at < 0) return refuse(ENOENT);
    const auto place = static_cast<std::size_t>(at);
    const CardControl& control = card.controls[place];
    bool changed = false;
    for (std::size_t i = 0; i < control.channels; ++i) {
        const long wanted = control.kind == CardControl::Kind::choice
                                ? static_cast<long>(value.value.enumerated.item[i])
                                : value.value.integer.value[i];
        if (wanted < control.least || wanted > control.most) return refuse(EINVAL);
        changed = changed || wanted != value_of(card, place, i);
        store_difference(card, place, i, wanted - control.first);
    }
    return changed ? 1 : 0;
}

template <typename Structure>
Structure& at(void* argument) {
    return *static_cast<Structure*>(argument);
}

int answer(const Card& card, unsigned long request, void* argument) {
    switch (request) {
    case SNDRV_CTL_IOCTL_PVERSION:
        at<int>(argument) = SNDRV_CTL_VERSION;
        return 0;
    case SNDRV_CTL_IOCTL_CARD_INFO:
        return tell_card(card, at<snd_ctl_card_info>(argument));
    case SNDRV_CTL_IOCTL_PCM_NEXT_DEVICE:
        return tell_next_device(card, at<int>(argument));
    case SNDRV_CTL_IOCTL_PCM_INFO:
        return tell_device(card, at<snd_pcm_info>(argument));
    case SNDRV_CTL_IOCTL_ELEM_LIST:
        return tell_controls(card, at<snd_ctl_elem_list>(argument));
    case SNDRV_CTL_IOCTL_ELEM_INFO:
        return tell_control(card, at<snd_ctl_elem_info>(argument));
    case SNDRV_CTL_IOCTL_ELEM_READ:
        return tell_value(card, at<snd_ctl_elem_value>(argument));
    case SNDRV_CTL_IOCTL_ELEM_WRITE:
        return take_value(card, at<snd_ctl_elem_value>(argument));
    case SNDRV_CTL_IOCTL_SUBSCRIBE_EVENTS:
    case SNDRV_CTL_IOCTL_PCM_PREFER_SUBDEVICE:
        return 0;
    default:
        return refuse(ENOTTY);
    }
}

} // namespace

// The C library declares most of these otherwise, or not at all.
extern "C" {

#define IN_PLACE_OF(name) __attribute__((visibility("default"))) int name

int pretended_open(const char* path, int flags, ...) __asm__("open");
int pretended_open64(const char* path, int flags, ...) __asm__("open64");
int pretended_open_2(const char* path, int flags) __asm__("__open_2");
int pretended_open64_2(const char* path, int flags) __asm__("__open64_2");
int pretended_close(int descriptor) __asm__("close");
int pretended_ioctl(int descriptor, unsigned long request, ...) __asm__("ioctl");

#define MODE_BEHIND(last)                                                                          \
    std::va_list arguments;                                                                        \
    va_start(arguments, last);                                                                     \
    const auto mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;                      \
    va_end(arguments)

IN_PLACE_OF(pretended_open)(const char* path, int flags, ...) {
    MODE_BEHIND(flags);
    return open_any("open", path, flags, mode);
}

IN_PLACE_OF(pretended_open64)(const char* path, int flags, ...) {
    MODE_BEHIND(flags);
    return open_any("open64", path, flags, mode);
}

IN_PLACE_OF(pretended_open_2)(const char* path, int flags) {
    return open_any("open", path, flags, 0);
}

IN_PLACE_OF(pretended_open64_2)(const char* path, int flags) {
    return open_any("open64", path, flags, 0);
}

IN_PLACE_OF(pretended_close)(int descriptor) {
    open_cards().erase(descriptor);
    return behind<int(int)>("close")(descriptor);
}

IN_PLACE_OF(pretended_ioctl)(int descriptor, unsigned long request, ...) {
    std::va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    const auto card = open_cards().find(descriptor);
    if (card != open_cards().end()) return answer(card->second, request, argument);
    return behind<int(int, unsigned long, ...)>("ioctl")(descriptor, request, argument);
}
}
