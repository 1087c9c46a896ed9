// SPDX-License-Identifier: GPL-3.0-or-later
#include "SpectrumTransform.h"

#include "SpectrumAnalyser.h"

extern "C" {
#include <libavutil/tx.h>
}

#include <algorithm>
#include <bit>
#include <cmath>
#include <new>
#include <numbers>

namespace lantern {

namespace {

constexpr double kWindowSeconds = 0.06; // at least; the next power of two of frames
// All but two percent of a tone's power lies in its own bin and so many to either side.
constexpr int kSpreadBins = 1;

// The bins of a full-scale tone under the window have this power, whatever its frequency: the
// mean square of the window is 3/8, and half of a tone's power lies at the negative frequency.
double FullScalePower(double frames)
{
    return frames * frames * 3.0 / 32.0;
}

} // namespace

BandEdges EdgesOf(int band, int bandCount)
{
    const auto edge = [bandCount](int index) {
        const double part = static_cast<double>(index) / std::max(bandCount, 1);
        return SpectrumAnalyser::kLowestHz *
               std::pow(SpectrumAnalyser::kHighestHz / SpectrumAnalyser::kLowestHz, part);
    };
    return {edge(band), edge(band + 1)};
}

float StrengthOf(double power)
{
    const double floor = std::pow(10.0, SpectrumAnalyser::kFloorDb / 10.0);
    if (!(power > floor))
        return 0.0F;
    return static_cast<float>(
        std::min(1.0 - 10.0 * std::log10(power) / SpectrumAnalyser::kFloorDb, 1.0));
}

int SpectrumWindowFrames(int sampleRate)
{
    const double wanted = kWindowSeconds * std::clamp(sampleRate, 1000, 768000);
    return static_cast<int>(std::bit_ceil(static_cast<unsigned>(wanted)));
}

void SpectrumTransform::Release::operator()(AVTXContext* context) const
{
    av_tx_uninit(&context);
}

SpectrumTransform::SpectrumTransform(int sampleRate)
    : m_sampleRate(std::max(sampleRate, 1)), m_frames(SpectrumWindowFrames(sampleRate))
{
    AVTXContext* context = nullptr;
    const float scale = 1.0F;
    // Plain memory is not aligned as much as the transform would like.
    if (av_tx_init(&context, &m_transform, AV_TX_FLOAT_FFT, 0, m_frames, &scale, AV_TX_UNALIGNED) <
        0)
        throw std::bad_alloc(); // every power of two is a length that it knows
    m_context.reset(context);

    const auto frames = static_cast<std::size_t>(m_frames);
    m_stretch.resize(frames * 2);
    m_windowed.resize(frames);
    m_bins.resize(frames);
    m_powerBelow.resize(frames / 2 + 2);
    for (std::size_t i = 0; i < frames; ++i) {
        const double angle = 2.0 * std::numbers::pi * static_cast<double>(i) / m_frames;
        m_window.push_back(static_cast<float>(0.5 - 0.5 * std::cos(angle)));
    }
}

SpectrumTransform::~SpectrumTransform() = default;

// Both channels go through one complex transform. The power of a bin and that of its mirror bin
// add up to twice that of the two channels.
void SpectrumTransform::Transform()
{
    static_assert(sizeof(Bin) == sizeof(AVComplexFloat));
    for (std::size_t i = 0; i < m_windowed.size(); ++i)
        m_windowed[i] = {m_stretch[2 * i] * m_window[i], m_stretch[2 * i + 1] * m_window[i]};
    m_transform(m_context.get(), m_bins.data(), m_windowed.data(), sizeof(Bin));

    const auto power = [this](std::size_t bin) {
        const Bin& value = m_bins[bin % m_bins.size()];
        return static_cast<double>(value.real * value.real + value.imaginary * value.imaginary);
    };
    const double bothChannelsTwice = 4.0 * FullScalePower(m_frames);
    for (std::size_t bin = 0; bin + 1 < m_powerBelow.size(); ++bin) {
        const double mean = (power(bin) + power(m_bins.size() - bin)) / bothChannelsTwice;
        m_powerBelow[bin + 1] = m_powerBelow[bin] + mean;
    }
}

// Each band with the bins into which a tone at its edge spreads.
void SpectrumTransform::SetBandCount(int count)
{
    m_bands.assign(static_cast<std::size_t>(count), {});
    const double binHz = static_cast<double>(m_sampleRate) / m_frames;
    const double binCount = static_cast<double>(m_powerBelow.size()) - 1.0;
    const auto within = [binCount](double bin) {
        return static_cast<std::size_t>(std::clamp(bin, 0.0, binCount));
    };
    for (int band = 0; band < count; ++band) {
        const BandEdges edges = EdgesOf(band, count);
        if (edges.lowHz / binHz < binCount)
            m_bands[static_cast<std::size_t>(band)] = {
                within(std::round(edges.lowHz / binHz) - kSpreadBins),
                within(std::round(edges.highHz / binHz) + kSpreadBins + 1)};
    }
}

void SpectrumTransform::Measure(std::span<float> strengths)
{
    if (m_bands.size() != strengths.size())
        SetBandCount(static_cast<int>(strengths.size()));
    Transform();
    for (std::size_t band = 0; band < strengths.size(); ++band)
        strengths[band] =
            StrengthOf(m_powerBelow[m_bands[band].end] - m_powerBelow[m_bands[band].first]);
}

} // namespace lantern
