// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

struct AVTXContext;

namespace lantern {

// Frequencies between which a band lies; the bands are neighbours, in equal steps of pitch from
// SpectrumAnalyser::kLowestHz to kHighestHz.
struct BandEdges {
    double lowHz = 0.0;
    double highHz = 0.0;
};
BandEdges EdgesOf(int band, int bandCount);

// 0 for SpectrumAnalyser::kFloorDb and below, 1 for a power of 1 and above, which is that of a
// full-scale tone; in between linear in decibels. What is no number is 0.
float StrengthOf(double power);

// Frames that are looked at together: a power of two, 60 to 120 milliseconds at any usual rate.
int SpectrumWindowFrames(int sampleRate);

// How strong the bands of a short stretch of sound are. A tone counts with its full power in the
// band it lies in, wherever in it. A pair of channels counts with the mean of their powers, so
// that opposite ones do not cancel each other.
class SpectrumTransform {
public:
    explicit SpectrumTransform(int sampleRate);
    ~SpectrumTransform();

    int SampleRate() const { return m_sampleRate; }
    // Where the stretch is put: interleaved stereo, SpectrumWindowFrames long. Its middle counts
    // most.
    std::span<float> Stretch() { return m_stretch; }
    // Fills in the strength of each of so many bands. Changes nothing of the stretch.
    void Measure(std::span<float> strengths);

private:
    struct Bin {
        float real = 0.0F;
        float imaginary = 0.0F;
    };
    // Bins from first up to end, which is none of them.
    struct BinRange {
        std::size_t first = 0;
        std::size_t end = 0;
    };
    struct Release {
        void operator()(AVTXContext* context) const;
    };
    using Function = void (*)(AVTXContext*, void* out, void* in, std::ptrdiff_t stride);

    void SetBandCount(int count);
    void Transform();

    int m_sampleRate;
    int m_frames;
    std::unique_ptr<AVTXContext, Release> m_context;
    Function m_transform = nullptr;
    std::vector<float> m_stretch;
    std::vector<float> m_window;
    std::vector<Bin> m_windowed;
    std::vector<Bin> m_bins;
    // The power of all bins below each, so that any run of bins is one difference.
    std::vector<double> m_powerBelow;
    std::vector<BinRange> m_bands;
};

} // namespace lantern
