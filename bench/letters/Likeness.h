// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QRect>

namespace lantern {

// How much a picture looks like the truth within some boxes.
struct Likeness {
    double structure =
        0;            // SSIM of the brightness, through a Gaussian window of 11 by 11; 1 is alike
    double error = 0; // mean of the differences in linear light, of all there is

    Likeness& operator+=(const Likeness& other);
};

// The sum over all pixels in the boxes, and how many they are.
Likeness SummedLikeness(const QImage& picture, const QImage& truth, const QList<QRect>& boxes,
                        double& pixels);

} // namespace lantern
