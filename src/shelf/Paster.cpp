#include "shelf/Paster.h"

namespace quillet {

namespace {

constexpr uint16_t keyV = 9;
constexpr uint64_t commandFlag = 0x100000;

} // namespace

void Paster::pasteIntoFrontApp(const Access& access, KeySynthesis& keys,
                               KeySynthesis::Completion completion) {
    if (!access.isGranted(Access::Kind::accessibility))
        return completion(false);
    keys.post({{keyV, true, commandFlag}, {keyV, false, commandFlag}}, std::move(completion));
}

} // namespace quillet
