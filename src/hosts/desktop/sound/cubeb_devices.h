// The default sound device of the machine, through libcubeb: PulseAudio's, or what takes its place, else ALSA's.
//
// Devices are opened and closed on a thread of their own, for the libraries may wait for ever where a sound server does
// not answer; while they wait there is no device. An attempt is made at most once a second.
//
// A device is ready a few hundredths of a second after it was opened. The exception is a null sink of PulseAudio that
// is in use by nobody: it renders two seconds in advance and asks a new stream for nothing before they are over.
#pragma once

#include <memory>

#include "hosts/desktop/sound/device.h"

namespace desktop {

class CubebDevices : public Devices {
public:
    CubebDevices();
    ~CubebDevices() override; // does not wait for the thread
    CubebDevices(const CubebDevices&) = delete;
    CubebDevices& operator=(const CubebDevices&) = delete;

    std::unique_ptr<Device> take() override;
    bool failed() const override;
    void give_back(std::unique_ptr<Device> device) override;

private:
    struct State;

    std::shared_ptr<State> state_; // the thread's as well
};

} // namespace desktop
