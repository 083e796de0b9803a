#include "platform/rich/RichText.h"

#include <algorithm>

namespace talvora {
namespace {

bool samePicture(const std::shared_ptr<const Picture>& a, const std::shared_ptr<const Picture>& b) {
    return a == b || (a && b && *a == *b);
}

}  // namespace

bool operator==(const Paragraph& a, const Paragraph& b) {
    return a.Text == b.Text && a.Runs == b.Runs && a.Format == b.Format &&
           std::ranges::equal(a.Pictures, b.Pictures, samePicture);
}

RichHead::RichHead() : Fonts{{"Tahoma", 161}}, Colors{0} {
    Base.HalfPoints = 17;
}

}  // namespace talvora
