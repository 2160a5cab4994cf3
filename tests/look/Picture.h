#pragma once

#include <gtest/gtest.h>
#include <QImage>

namespace quillet {

/// Compares a picture with the reference of this name beside the tests: few pixels may differ, and
/// none by much. Where they do, the actual picture and the difference go to picture-failures in the
/// build folder. With QUILLET_REWRITE_PICTURES set, the picture becomes the reference instead.
testing::AssertionResult matchesPicture(const QImage& actual, const QString& name);

} // namespace quillet
