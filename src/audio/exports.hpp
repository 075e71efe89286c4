#pragma once

#include "core/edge.hpp"
#include "qvtcapi/qvtcapi.h"

/// The exported names of this folder that the public header leaves out.
extern "C" {

/// Both always 0.
QVTC_EXPORT int set_camera_mic_default_source();
QVTC_EXPORT int volumeinit();

/// Operation 0 reads the volume of a channel (0 playback, 1 capture) into
/// `value`, 1 sets it; any other one does nothing. 0, or -1 for a value to be set
/// that is not within 0 to 100, for an unknown channel, and for no `value`.
QVTC_EXPORT int audio_volume(unsigned operation, unsigned channel, long* value);

QVTC_EXPORT json_object* getvolume();
/// Always 0.
QVTC_EXPORT int setvolume(const char* params);
}
