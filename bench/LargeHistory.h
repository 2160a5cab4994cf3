#pragma once

#include "support/World.h"

namespace quillet {

/// The history of someone who copies a lot: 2,000 items, every fourth of them an image.
class LargeHistory {
public:
    /// Every image is this one, and yet another clip.
    explicit LargeHistory(const QByteArray& png);

    static QString text(int number);

    World world;
};

/// A small image, where its size does not matter.
QByteArray smallPng();

} // namespace quillet
