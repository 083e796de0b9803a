#pragma once
// Who makes the views of plug-ins that have controls of their own. Whoever makes the windows owns it and
// fills it before the first window opens.

#include <functional>
#include <utility>
#include <vector>

#include "extensions/ChatPlugin.h"

class QWidget;

namespace talvora {

class PluginViews {
  public:
    // A view of the plug-in as a child of `parent`; null for a plug-in that is not of the maker's kind. The
    // plug-in outlives the view.
    using Maker = std::function<QWidget*(ChatPlugin& plugin, QWidget* parent)>;

    void Register(Maker maker) { makers_.push_back(std::move(maker)); }

    // Null if the plug-in has no view.
    QWidget* Make(ChatPlugin& plugin, QWidget* parent) const {
        for (const Maker& make : makers_) {
            if (QWidget* view = make(plugin, parent)) return view;
        }
        return nullptr;
    }

  private:
    std::vector<Maker> makers_;
};

}  // namespace talvora
