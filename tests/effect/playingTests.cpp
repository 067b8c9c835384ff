// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests how the effect responds to onsets in the sound and to notes and controllers.

#include "Rendering.hpp"

namespace tonewright::effect::test {
namespace {

using P = Parameter;
using Bytes = std::vector<std::uint8_t>;

std::vector<OutgoingMidi> notesOn(const Rendered& rendered) {
    std::vector<OutgoingMidi> on;
    std::copy_if(rendered.midi.begin(), rendered.midi.end(), std::back_inserter(on),
                 [](const OutgoingMidi& m) { return (m.bytes[0] & 0xF0U) == 0x90U; });
    return on;
}

TEST(Onsets, AreFoundOnceEachInTimeInOrderOfStrengthAndEnd) {
    const std::vector<std::size_t> at{6000, 20000, 33000, 47000, 62000, 75000};
    const std::vector<float> levels{0.05F, 0.1F, 0.2F, 0.35F, 0.6F, 0.95F};
    for (const double hertz : {45., 110., 880., 5000.}) {
        // The notes are longer than some gaps between strokes: the next onset ends the sounding note.
        const Rendered out =
            render(changed(defaultValues(), {{P::Gate, 290.F}}), strokes(at, levels, 96000, hertz));
        int sounding = 0;
        std::uint32_t last = 0;
        for (const OutgoingMidi& message : out.midi) {
            EXPECT_GE(message.frame, std::exchange(last, message.frame));
            sounding += (message.bytes[0] & 0xF0U) == 0x90U ? 1 : -1;
            EXPECT_TRUE(sounding == 0 || sounding == 1) << hertz << " Hz";
        }
        EXPECT_EQ(sounding, 0) << hertz << " Hz";
        const auto on = notesOn(out);
        ASSERT_EQ(on.size(), at.size()) << hertz << " Hz";
        for (std::size_t i = 0; i < at.size(); ++i) {
            const auto late = static_cast<double>(on[i].frame) - static_cast<double>(at[i]);
            EXPECT_GE(late, 0.);
            EXPECT_LT(late, 0.010 * Rate) << hertz << " Hz, stroke " << i;
            if (i > 0) {
                EXPECT_GT(on[i].bytes[2], on[i - 1].bytes[2]) << hertz << " Hz, stroke " << i;
            }
        }
    }
}

TEST(Onsets, AreNotFoundInSteadySound) {
    for (const Signal& in :
         {sine(40., 0.5F, 96000), sine(220., 0.5F, 96000), sine(3000., 0.5F, 96000), noise(0.3F, 96000)}) {
        EXPECT_LE(notesOn(render(defaultValues(), in)).size(), 1U); // the start may be an onset
    }
    EXPECT_TRUE(notesOn(render(defaultValues(), Signal(48000, 0.F))).empty());
}

TEST(Onsets, SendTheHeldNoteTheRootOrNothing) {
    const Signal in = strokes({3000}, {0.5F}, 24000, 300.);
    const auto sent = [&in](float mode, const std::vector<Bytes>& messages) {
        Processor processor{Rate};
        processor.setParameters(changed(defaultValues(), {{P::MidiOut, mode}, {P::Note, 40.F}}));
        for (const Bytes& message : messages) processor.midi(message);
        const auto on = notesOn(render(processor, in, 256));
        return on.empty() ? -1 : static_cast<int>(on[0].bytes[1]);
    };
    EXPECT_EQ(sent(0.F, {}), -1);
    EXPECT_EQ(sent(1.F, {}), 40);
    EXPECT_EQ(sent(1.F, {{0x90, 67, 100}}), 67);
    EXPECT_EQ(sent(2.F, {{0x90, 67, 100}}), 40);
}

TEST(Playing, KeepsAStackOfHeldNotes) {
    Performance performance;
    struct Step {
        Bytes message;
        int held, tuning;
        std::size_t chord;
    };
    for (const auto& [message, held, tuning, chord] : {
             Step{{0x90, 60, 100}, 60, 60, 1},
             Step{{0x93, 64, 100}, 64, 64, 2}, // channels do not matter
             Step{{0x90, 67, 100}, 67, 67, 3},
             Step{{0x80, 67, 0}, 64, 64, 2}, // returns to the note that is still held
             Step{{0x90, 64, 0}, 60, 60, 1}, // velocity 0 means note off
             Step{{0x80, 60, 0}, -1, 60, 1}, // keeps the last tuning
             Step{{0xB0, 64, 127}, -1, 60, 1},
             Step{{0x90, 50, 90}, 50, 50, 1},
             Step{{0x80, 50, 0}, 50, 50, 1}, // held by the sustain pedal
             Step{{0xB0, 64, 0}, -1, 50, 1},
             Step{{0x90, 55, 90}, 55, 55, 1},
             Step{{0xB0, 123, 0}, -1, 55, 1},
         }) {
        performance.handle(message);
        EXPECT_EQ(performance.heldNote(), held) << testing::PrintToString(message);
        EXPECT_EQ(performance.tuningNote(), tuning) << testing::PrintToString(message);
        EXPECT_EQ(performance.chord().size(), chord) << testing::PrintToString(message);
    }
}

TEST(Playing, IgnoresWhatIsMalformed) {
    Performance performance;
    for (const Bytes& message : {Bytes{}, Bytes{0x90}, Bytes{0x90, 60}, Bytes{60, 60, 60},
                                 Bytes{0x90, 0xFF, 0x40}, Bytes{0xF0, 1, 2, 3, 0xF7}, Bytes(300, 0x90)}) {
        performance.handle(message);
    }
    EXPECT_EQ(performance.heldNote(), -1);
}

TEST(Playing, ShapesTheSound) {
    // Each message must change the brightness in the documented direction.
    const auto values = changed(transparent(), {{P::FilterMode, static_cast<float>(FilterMode::LowPass24)},
                                                {P::Cutoff, 400.F},
                                                {P::EnvelopeToCutoff, 0.F}});
    const auto brightness = [&values](const std::vector<Bytes>& messages) {
        Processor processor{Rate};
        processor.setParameters(values);
        for (const Bytes& message : messages) processor.midi(message);
        return decibels(rms(render(processor, sine(2000., 0.3F, 24000), 256).left, 12000, 24000));
    };
    const double plain = brightness({});
    EXPECT_GT(brightness({{0xB0, 1, 127}}), plain + 20.) << "mod wheel";
    EXPECT_GT(brightness({{0xB0, 74, 127}}), plain + 15.) << "brightness";
    EXPECT_LT(brightness({{0xB0, 74, 0}}), plain - 15.) << "brightness";
    EXPECT_GT(brightness({{0x90, 60, 127}}), plain + 8.) << "velocity";
    EXPECT_LT(brightness({{0x90, 60, 1}}), plain - 8.) << "velocity";
    EXPECT_GT(brightness({{0x90, 96, 64}}), brightness({{0x90, 60, 64}}) + 10.) << "key tracking";
    EXPECT_NEAR(brightness({{0xB0, 1, 127}, {0xB0, 121, 0}}), plain, 0.1) << "reset all controllers";
}

TEST(Playing, RetunesTheResonatorsAndTheKnobTakesOver) {
    const auto values = changed(
        transparent(),
        {{P::ResonatorMix, 100.F}, {P::Voicing, 0.F}, {P::Note, 48.F}, {P::Glide, 0.F}, {P::Decay, 2.F}});
    const Signal in = noise(0.2F, 48000);
    const auto ringsAt = [&in](Processor& processor, double hertz) {
        const Signal out = render(processor, in, 256).left;
        return amplitudeAt(out, 24000, 24000, hertz);
    };
    Processor processor{Rate};
    processor.setParameters(values);
    const Bytes a4{0x90, 69, 64};
    processor.midi(a4);
    EXPECT_GT(ringsAt(processor, 440.), 5. * ringsAt(processor, 392.));
    processor.midi(Bytes{0x80, 69, 0});
    processor.setParameters(changed(values, {{P::Note, 67.F}}));
    EXPECT_GT(ringsAt(processor, 392.), 5. * ringsAt(processor, 440.));
    processor.midi(a4);
    processor.midi(Bytes{0xE0, 0x7F, 0x7F}); // bends up by two semitones
    EXPECT_GT(ringsAt(processor, 493.9), 5. * ringsAt(processor, 440.));
    const Signal silence(9600, 0.F);
    const double ringing = rms(render(processor, silence, 256).left, 4800, 9600);
    processor.midi(Bytes{0xB0, 120, 0});
    const double stopped = rms(render(processor, silence, 256).left, 4800, 9600);
    EXPECT_LT(decibels(stopped / ringing), -50.) << "all sound off";
}

TEST(Controls, ReadAndWriteAsPeopleDo) {
    const auto text = [](Parameter p, float value) { return valueText(info(p), value); };
    EXPECT_EQ(text(P::Cutoff, 440.F), "440 Hz");
    EXPECT_EQ(text(P::Cutoff, 1250.F), "1.25 kHz");
    EXPECT_EQ(text(P::Output, -6.F), "-6.0 dB");
    EXPECT_EQ(text(P::Note, 60.F), "C4");
    EXPECT_EQ(text(P::Shape, 2.F), "Tube");
    const auto parsed = [](Parameter p, std::string_view typed) {
        return parseValue(info(p), typed).value_or(-999.F);
    };
    EXPECT_EQ(parsed(P::Cutoff, "1.2k"), 1200.F);
    EXPECT_EQ(parsed(P::Cutoff, " 99999"), 20000.F);
    EXPECT_EQ(parsed(P::Note, "a3"), 57.F);
    EXPECT_EQ(parsed(P::Note, "Db2"), 37.F);
    EXPECT_EQ(parsed(P::Shape, "tu"), 2.F);
    EXPECT_EQ(parsed(P::Output, "-6 dB"), -6.F);
    EXPECT_EQ(parsed(P::Output, "loud"), -999.F);
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        const ParameterInfo& p = parameterTable()[i];
        for (const float travel : {0.F, 0.25F, 1.F}) {
            const float value = fromTravel(p, travel);
            EXPECT_NEAR(fromTravel(p, toTravel(p, value)), value, 1e-3F * std::abs(value) + 1e-4F)
                << p.symbol;
        }
    }
}

} // namespace
} // namespace tonewright::effect::test
