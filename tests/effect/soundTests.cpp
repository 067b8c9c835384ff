// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the effect's sound: delay, transparency, aliasing, loudness, tuning, smooth changes.

#include "Rendering.hpp"

#include "effect/dsp/Presets.hpp"
#include "effect/dsp/Shapers.hpp"

namespace tonewright::effect::test {
namespace {

using P = Parameter;
constexpr auto Late = static_cast<std::size_t>(Processor::latencyFrames());

TEST(Latency, IsWhatIsReportedAtEverySetting) {
    Signal impulse(512, 0.F);
    impulse[100] = 0.01F; // so small that every shape is almost linear
    for (const double rate : {8000., 44100., 48000., 192000.}) {
        for (std::size_t shape = 0; shape < ShapeCount; ++shape) {
            if (static_cast<Shape>(shape) == Shape::Octave) continue; // rectifies, so it is linear nowhere
            for (const float oversampling : {0.F, 1.F}) {
                Processor processor{rate};
                processor.setParameters(changed(transparent(), {{P::Shape, static_cast<float>(shape)},
                                                                {P::Oversampling, oversampling},
                                                                {P::Drive, 0.F}}));
                const Signal out = render(processor, impulse, 64).left;
                const auto at =
                    static_cast<std::size_t>(std::max_element(out.begin(), out.end()) - out.begin());
                EXPECT_EQ(at, 100 + Late) << rate << " shape " << shape;
                // A peak between two samples would also be found here, so both neighbours must be equal.
                EXPECT_NEAR(out[at - 1], out[at + 1], 0.02F * out[at] + 1e-5F);
            }
        }
    }
}

TEST(DryPath, IsBitTrueWhenBypassedOrDry) {
    const Signal in = noise(0.7F, 20000);
    for (const ParameterValues& values :
         {changed(defaultValues(), {{P::Enabled, 0.F}}), changed(defaultValues(), {{P::Mix, 0.F}})}) {
        const Rendered out = render(values, in, 100);
        for (std::size_t i = Late; i < in.size(); ++i) ASSERT_EQ(out.left[i], in[i - Late]) << i;
    }
}

TEST(Drive, KeepsAliasesDown) {
    // 5 kHz distorted at 48 kHz: the harmonics at 25, 35 and 45 kHz alias to 23, 13 and 3 kHz.
    const Signal in = sine(5000., 0.5F, 24000);
    for (const auto& [oversampling, limit] : {std::pair{0.F, -50.}, std::pair{1.F, -70.}}) {
        const Signal out = render(changed(transparent(), {{P::Shape, static_cast<float>(Shape::Warm)},
                                                          {P::Drive, 18.F},
                                                          {P::Oversampling, oversampling}}),
                                  in)
                               .left;
        const double tone = amplitudeAt(out, 8000, 9600, 5000.);
        for (const double alias : {13000., 3000., 7000.}) {
            EXPECT_LT(decibels(amplitudeAt(out, 8000, 9600, alias) / tone), limit)
                << alias << " Hz, oversampling " << oversampling;
        }
        EXPECT_GT(decibels(amplitudeAt(out, 8000, 9600, 15000.) / tone), -30.)
            << "there is no distortion to alias";
    }
}

TEST(Drive, KeepsLoudnessAndBlocksDirectCurrent) {
    const Signal in = sine(200., 0.25F, 48000);
    for (std::size_t shape = 1; shape < ShapeCount; ++shape) {
        for (const float drive : {0.F, 12.F, 24.F, 36.F}) {
            const auto values =
                changed(transparent(), {{P::Shape, static_cast<float>(shape)}, {P::Drive, drive}});
            const Signal out = render(values, in).left;
            EXPECT_NEAR(decibels(rms(out, 24000, 48000) / rms(in, 24000, 48000)), 0., 1.)
                << "shape " << shape << " drive " << drive;
            const Signal biased = render(changed(values, {{P::Bias, 80.F}}), in).left;
            const double mean = std::accumulate(biased.begin() + 24000, biased.end(), 0.) / 24000.;
            EXPECT_LT(std::abs(mean), 1e-3) << "shape " << shape << " drive " << drive;
        }
    }
}

TEST(Filter, HasTheResponseItDraws) {
    for (std::size_t mode = 1; mode < FilterModeCount; ++mode) {
        for (const double hertz : {250., 900., 1000., 4000.}) {
            const auto values = changed(transparent(), {{P::FilterMode, static_cast<float>(mode)},
                                                        {P::Cutoff, 1000.F},
                                                        {P::Resonance, 40.F},
                                                        {P::EnvelopeToCutoff, 0.F}});
            const Signal out = render(values, sine(hertz, 0.25F, 30000)).left;
            const double wanted = decibels(static_cast<double>(StateVariableFilter::magnitude(
                static_cast<FilterMode>(mode), 1000.F, 0.4F, static_cast<float>(hertz))));
            const double heard = decibels(amplitudeAt(out, 15000, 9600, hertz) / 0.25);
            if (wanted > -60.) {
                EXPECT_NEAR(heard, wanted, 1.) << "mode " << mode << " at " << hertz;
            }
        }
    }
}

TEST(Filter, StaysStableUnderTheFastestModulation) {
    const FlushDenormals flush;
    StateVariableFilter filter{Rate};
    filter.reset(FilterMode::LowPass24, 1000.F, 1.F);
    float most = 0.F;
    for (std::uint32_t tick = 0; tick < 1000; ++tick) {
        filter.beginTick(FilterMode::LowPass24, tick % 2 == 0 ? 20000.F : 20.F, 1.F);
        Signal left = noise(0.5F, TickFrames, tick), right = left;
        filter.process(left.data(), right.data(), TickFrames);
        most = std::max(most, peak(left));
    }
    EXPECT_TRUE(most < 20.F && most > 0.F) << most;
}

TEST(Resonators, RingInTuneAndDecayAsSaid) {
    Signal in = noise(0.5F, 200);
    in.resize(96000);
    const auto values = changed(
        transparent(),
        {{P::ResonatorMix, 100.F}, {P::Voicing, 3.F}, {P::Damping, 0.F}, {P::Note, 57.F}, {P::Decay, 2.F}});
    for (const double rate : {44100., 48000., 96000.}) {
        Processor processor{rate};
        processor.setParameters(values);
        const Signal out = render(processor, in, 256).left;
        // Searches for the peak around the A at 220 Hz. (The left channel is tuned 1.5 cents lower.)
        std::pair<double, double> best; // level and cents
        for (double cents = -30.; cents <= 30.; cents += 0.5) {
            best =
                std::max(best, {amplitudeAt(out, 4000, 60000, 220. * std::exp2(cents / 1200.), rate), cents});
        }
        EXPECT_NEAR(best.second, -1.5, 2.) << rate;
        EXPECT_LT(amplitudeAt(out, 4000, 60000, 235., rate), best.first / 30.)
            << "there is no sound between the strings";
    }
    const Signal out = render(values, in).left;
    const double fall = decibels(rms(out, 12000, 24000)) - decibels(rms(out, 60000, 72000));
    EXPECT_NEAR(fall, 30., 5.) << "in one second, half of the time for 60 dB";
}

TEST(Changes, AreFreeOfClicks) {
    // A low sine has no corners. A change may bend it, but must not add a corner.
    const Signal in = sine(110., 0.4F, 48000);
    struct Change {
        ParameterValues base;
        P parameter;
        float from, to;
        float limit; // allowed sharpness of the corner, divided by the sharpest corner of the steady states
    };
    const auto clean = changed(transparent(), {{P::Shape, 1.F}});
    const auto lowPass = changed(clean, {{P::FilterMode, 2.F}, {P::EnvelopeToCutoff, 0.F}});
    const auto strings = changed(lowPass, {{P::ResonatorMix, 80.F}});
    const Change changes[] = {
        {clean, P::Output, 0.F, -24.F, 0.004F},
        {strings, P::Mix, 100.F, 0.F, 0.004F},
        {strings, P::Enabled, 1.F, 0.F, 0.004F},
        {lowPass, P::Drive, 0.F, 30.F, 0.004F},
        {lowPass, P::Shape, 1.F, 2.F, 0.004F},
        {lowPass, P::Oversampling, 1.F, 0.F, 0.004F},
        {lowPass, P::Cutoff, 300.F, 12000.F, 0.008F},
        {changed(lowPass, {{P::Cutoff, 800.F}}), P::FilterMode, 2.F, 5.F, 0.008F},
        {lowPass, P::Resonance, 0.F, 90.F, 0.008F},
        {strings, P::ResonatorMix, 0.F, 80.F, 0.01F},
        {strings, P::Decay, 1.5F, 0.1F, 0.01F},
    };
    for (const Change& change : changes) {
        for (const bool back : {false, true}) {
            const auto set = [&](Processor& processor, std::size_t frame) {
                processor.setParameters(changed(
                    change.base, {{change.parameter, (frame >= 24000) == back ? change.from : change.to}}));
            };
            Processor processor{Rate};
            set(processor, 0);
            const Signal out = render(processor, in, 480, set).left;
            const float steady =
                std::max(sharpestCorner(out, 18000, 23900), sharpestCorner(out, 40000, 47900));
            EXPECT_LT(sharpestCorner(out, 23900, 36000), steady + change.limit)
                << info(change.parameter).symbol << (back ? " back" : " forth") << ", steady " << steady;
        }
    }
}

TEST(Presets, AreAsLoudAsWhatGoesInAndTheSameInAllBlocks) {
    const Signal in = strokes({1000, 9000, 20000}, {0.4F, 0.3F, 0.6F}, 30000, 196.);
    for (const Preset& preset : factoryPresets()) {
        SCOPED_TRACE(preset.name);
        const Rendered expected = render(preset.values, in, in.size());
        EXPECT_GE(expected.midi.size(), 4U);
        const double level = decibels(rms(expected.left, 0, in.size()) / rms(in, 0, in.size()));
        EXPECT_TRUE(level > -16. && level < 9.) << level;
        for (const std::size_t block : {1U, 7U, 64U, 1000U, 8192U}) {
            const Rendered out = render(preset.values, in, block);
            ASSERT_EQ(out.left, expected.left) << block;
            ASSERT_TRUE(std::ranges::equal(out.midi, expected.midi, [](const auto& a, const auto& b) {
                return a.frame == b.frame && a.bytes == b.bytes;
            })) << block;
        }
    }
}

TEST(Blocks, MayBeProcessedInPlaceAndCrossed) {
    const auto process = [](std::size_t outLeft, std::size_t outRight) {
        std::array signals{noise(0.4F, 4096, 1), noise(0.4F, 4096, 2), Signal(4096), Signal(4096)};
        Processor processor{Rate};
        processor.setParameters(factoryPresets()[3].values);
        MidiOutbox outbox;
        outbox.beginBlock(0);
        processor.process(signals[0].data(), signals[1].data(), signals[outLeft].data(),
                          signals[outRight].data(), 4096, 0, outbox);
        return std::pair{signals[outLeft], signals[outRight]};
    };
    const auto expected = process(2, 3);
    EXPECT_EQ(process(0, 1), expected);
    EXPECT_EQ(process(1, 0), expected);
}

TEST(BadInput, IsForgottenAtOnce) {
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    const float nan = std::nanf("");
    const Signal good = noise(0.3F, 48000);
    Signal bad = good;
    for (std::size_t i = 2000; i < 2100; ++i) {
        bad[i] = i % 4 == 0 ? nan : (i % 4 == 1 ? Infinity : (i % 4 == 2 ? -Infinity : 3e38F));
    }
    for (const Preset& preset : factoryPresets()) {
        for (const double rate : {8000., 11025., 22050., 48000., 88200., 192000.}) {
            Processor processor{rate};
            processor.setParameters(preset.values);
            const Signal out = render(processor, bad, 333).left;
            EXPECT_TRUE(std::isfinite(peak(out))) << preset.name << " at " << rate;
            EXPECT_GT(rms(out, 40000, 48000), 1e-3) << preset.name << " fell silent at " << rate;
        }
    }
    for (const float value : {nan, -Infinity}) {
        ParameterValues values{};
        values.fill(value);
        EXPECT_TRUE(std::isfinite(peak(render(values, good).left))) << value;
    }
}

TEST(BadInput, FadesIntoTrueSilence) {
    Signal in = noise(0.5F, 4800);
    in.resize(48000 * 6);
    for (const Preset& preset : factoryPresets()) {
        const Signal out = render(changed(preset.values, {{P::Decay, 0.3F}}), in).left;
        for (std::size_t i = in.size() - 4800; i < in.size(); ++i) {
            ASSERT_TRUE(std::fpclassify(out[i]) != FP_SUBNORMAL && std::abs(out[i]) < 1e-6F) << preset.name;
        }
    }
}

} // namespace
} // namespace tonewright::effect::test
