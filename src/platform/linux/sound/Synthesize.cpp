// Writes the program's sounds as WAV files into a folder: synthesize FOLDER
//
// Every sound is computed from a handful of sines and noise, so that it needs no samples of
// anybody else and comes out the same on every machine.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr int sampleRate = 44100;
constexpr double peak = 0.7;

using Samples = std::vector<double>;

double decay(double seconds, double timeConstant) {
    return std::exp(-seconds / timeConstant);
}

/// Adds `level(t)` to what sounds from `start` on, t being the seconds since then.
template<typename Level>
void add(Samples& samples, double start, Level level) {
    const auto first = static_cast<std::size_t>(start * sampleRate);
    for (std::size_t i = first; i < samples.size(); ++i)
        samples[i] += level(static_cast<double>(i - first) / sampleRate);
}

/// Adds a tone whose pitch is `frequency(t)` and whose loudness is `level(t)`.
template<typename Frequency, typename Level>
void addSweep(Samples& samples, double start, Frequency frequency, Level level) {
    double phase = 0;
    add(samples, start, [&](double t) {
        phase += 2 * std::numbers::pi * frequency(t) / sampleRate;
        return level(t) * std::sin(phase);
    });
}

/// Adds a struck tone: at once loud, then fading.
void addTone(Samples& samples, double start, double frequency, double level, double fade) {
    addSweep(
        samples, start, [=](double) { return frequency; },
        [=](double t) { return level * decay(t, fade) * std::min(1.0, t / 0.002); });
}

/// Adds noise in a band around `centre`, narrower the larger `resonance` is.
template<typename Level>
void addNoise(Samples& samples, double start, double centre, double resonance, Level level) {
    std::uint32_t state = 0x2545F491;
    double low = 0;
    double band = 0;
    const double step = 2 * std::sin(std::numbers::pi * centre / sampleRate);
    add(samples, start, [&](double t) {
        state = state * 1664525U + 1013904223U;
        const double white = static_cast<double>(state) / 2147483648.0 - 1;
        low += step * band;
        band += step * (white - low - band / resonance);
        return level(t) * band;
    });
}

Samples silence(double seconds) {
    return Samples(static_cast<std::size_t>(seconds * sampleRate), 0.0);
}

/// A mirror going up and coming down again.
Samples shutter() {
    Samples samples = silence(0.22);
    for (const double start : {0.0, 0.085}) {
        addNoise(samples, start, 2600, 1.2, [](double t) { return decay(t, 0.012); });
        addNoise(samples, start, 900, 2, [](double t) { return 0.7 * decay(t, 0.02); });
    }
    return samples;
}

Samples tink() {
    Samples samples = silence(0.3);
    addTone(samples, 0, 2637, 1, 0.07);
    addTone(samples, 0, 5301, 0.5, 0.04);
    addTone(samples, 0, 8140, 0.25, 0.02);
    return samples;
}

Samples pop() {
    Samples samples = silence(0.13);
    addSweep(
        samples, 0, [](double t) { return 300 + 700 * std::min(1.0, t / 0.06); },
        [](double t) { return decay(t, 0.03) * std::min(1.0, t / 0.004); });
    return samples;
}

Samples morse() {
    Samples samples = silence(0.34);
    const auto beep = [&](double start, double length) {
        addSweep(
            samples, start, [](double) { return 740.0; },
            [=](double t) { return std::clamp(std::min(t, length - t) / 0.006, 0.0, 1.0); });
    };
    beep(0, 0.06);
    beep(0.11, 0.06);
    beep(0.22, 0.11);
    return samples;
}

/// Breath across the neck of a bottle.
Samples bottle() {
    Samples samples = silence(0.5);
    const auto breath = [](double t) { return std::min(1.0, t / 0.05) * decay(t, 0.15); };
    addSweep(
        samples, 0, [](double t) { return 228 + 6 * decay(t, 0.08); }, breath);
    addSweep(
        samples, 0, [](double) { return 684.0; }, [&](double t) { return 0.12 * breath(t); });
    addNoise(samples, 0, 456, 6, [&](double t) { return 0.05 * breath(t); });
    return samples;
}

Samples purr() {
    Samples samples = silence(0.6);
    const auto breath = [](double t) {
        return std::sin(std::numbers::pi * std::min(1.0, t / 0.6)) *
               std::pow(0.5 + 0.5 * std::sin(2 * std::numbers::pi * 27 * t), 2);
    };
    for (int harmonic = 1; harmonic <= 4; ++harmonic)
        addSweep(
            samples, 0, [=](double) { return 96.0 * harmonic; },
            [=](double t) { return breath(t) / harmonic; });
    return samples;
}

Samples frog() {
    Samples samples = silence(0.4);
    for (const double start : {0.0, 0.19}) {
        addSweep(
            samples, start, [](double t) { return 420 + 900 * t; },
            [](double t) {
                const double throat = std::sin(2 * std::numbers::pi * 58 * t);
                return throat * throat * std::clamp(std::min(t, 0.15 - t) / 0.03, 0.0, 1.0);
            });
    }
    return samples;
}

Samples glass() {
    Samples samples = silence(0.9);
    addTone(samples, 0, 1175, 1, 0.25);
    addTone(samples, 0, 1183, 0.6, 0.25); // beats with the first
    addTone(samples, 0, 2790, 0.5, 0.16);
    addTone(samples, 0, 5020, 0.3, 0.08);
    addTone(samples, 0, 7730, 0.15, 0.04);
    return samples;
}

Samples ping() {
    Samples samples = silence(0.7);
    addTone(samples, 0, 1568, 1, 0.16);
    addTone(samples, 0, 3136, 0.25, 0.08);
    return samples;
}

Samples blow() {
    Samples samples = silence(0.55);
    const auto gust = [](double t) {
        return std::pow(std::sin(std::numbers::pi * std::min(1.0, t / 0.55)), 2);
    };
    addNoise(samples, 0, 620, 2.5, gust);
    addNoise(samples, 0, 1500, 2, [&](double t) { return 0.35 * gust(t) * t / 0.55; });
    return samples;
}

/// A fanfare of four rising notes.
Samples hero() {
    Samples samples = silence(0.9);
    double start = 0;
    for (const double note : {392.0, 523.25, 659.25, 784.0}) {
        for (int harmonic = 1; harmonic <= 3; ++harmonic)
            addTone(samples, start, note * harmonic, 0.8 / (harmonic * harmonic), 0.17);
        start += 0.09;
    }
    return samples;
}

/// A sonar's ping and what the sea sends back.
Samples submarine() {
    Samples samples = silence(0.9);
    double level = 1;
    for (const double start : {0.0, 0.24, 0.48, 0.72}) {
        addTone(samples, start, 523, level, 0.11);
        addTone(samples, start, 1046, 0.15 * level, 0.05);
        level *= 0.4;
    }
    return samples;
}

/// Brings the loudest point to `peak` and takes both ends down to nothing.
void finish(Samples& samples) {
    double loudest = 0;
    for (const double sample : samples)
        loudest = std::max(loudest, std::abs(sample));
    const std::size_t fadeIn = sampleRate / 2000;
    const std::size_t fadeOut = sampleRate / 50;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto rise = static_cast<double>(i) / fadeIn;
        const auto fall = static_cast<double>(samples.size() - 1 - i) / fadeOut;
        samples[i] *= peak / loudest * std::min({1.0, rise, fall});
    }
}

void appendNumber(std::string& bytes, std::uint32_t value, int width) {
    for (int i = 0; i < width; ++i)
        bytes.push_back(static_cast<char>(value >> (8 * i) & 0xff));
}

std::string waveFile(const Samples& samples) {
    const auto dataSize = static_cast<std::uint32_t>(samples.size() * 2);
    std::string bytes = "RIFF";
    appendNumber(bytes, 36 + dataSize, 4);
    bytes += "WAVEfmt ";
    appendNumber(bytes, 16, 4);
    appendNumber(bytes, 1, 2); // PCM
    appendNumber(bytes, 1, 2); // one channel
    appendNumber(bytes, sampleRate, 4);
    appendNumber(bytes, sampleRate * 2, 4);
    appendNumber(bytes, 2, 2);
    appendNumber(bytes, 16, 2);
    bytes += "data";
    appendNumber(bytes, dataSize, 4);
    for (const double sample : samples)
        appendNumber(bytes, static_cast<std::uint32_t>(std::lround(sample * 32767)), 2);
    return bytes;
}

struct Recipe {
    const char* name;
    Samples (*make)();
};

constexpr Recipe recipes[] = {
    {"Shutter", shutter}, {"Tink", tink}, {"Pop", pop},   {"Morse", morse},
    {"Bottle", bottle},   {"Purr", purr}, {"Frog", frog}, {"Glass", glass},
    {"Ping", ping},       {"Blow", blow}, {"Hero", hero}, {"Submarine", submarine},
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: synthesize FOLDER\n", stderr);
        return 2;
    }
    for (const Recipe& recipe : recipes) {
        const std::string path = std::string(argv[1]) + "/" + recipe.name + ".wav";
        Samples samples = recipe.make();
        finish(samples);
        std::ofstream file(path, std::ios::binary);
        file << waveFile(samples);
        if (!file.flush()) {
            std::fprintf(stderr, "synthesize: cannot write %s\n", path.c_str());
            return 1;
        }
    }
    return 0;
}
