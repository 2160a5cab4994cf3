#include "LargeHistory.h"

#include "clipboard/ClipboardPreferences.h"
#include "support/SamplePictures.h"

namespace quillet {

using namespace Qt::StringLiterals;

LargeHistory::LargeHistory(const QByteArray& png) {
    world.preferences.set(ClipboardPreferences::maxItems, 100'000);
    for (int number = 0; number < 2000; ++number) {
        if (number % 4 == 0) // what follows the end of an image does not change it
            world.copy({{PasteboardType::png, png + QByteArray::number(number)}});
        else
            world.copy(text(number));
    }
}

QString LargeHistory::text(int number) {
    return u"The text of copy %1, about as long as one usually is. "_s.arg(number).repeated(4);
}

QByteArray smallPng() {
    return pngOf(sampleScreenshot({320, 200}));
}

} // namespace quillet
