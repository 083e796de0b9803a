#pragma once
// The toolkit's application object that loops, stores and plug-ins need, unless another benchmark has made
// one. Declared before what needs it.

#include <QtCore/QCoreApplication>
#include <array>
#include <memory>

namespace talvora {

class Application {
    int argc_ = 1;
    std::array<char, 6> program_{"bench"};
    std::array<char*, 2> argv_{program_.data(), nullptr};
    std::unique_ptr<QCoreApplication> own_ = QCoreApplication::instance() == nullptr
                                                 ? std::make_unique<QCoreApplication>(argc_, argv_.data())
                                                 : nullptr;
};

}  // namespace talvora
