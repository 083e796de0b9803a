#pragma once
// Files that the user drops on a widget. Whom they are for is looked up where they fall; what is done with
// them comes in the next turn, so that the program they were dragged from waits for no question of ours.

#include <QPoint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QWidget;

namespace talvora {

class ListTree;

// Native paths.
using TakeFiles = std::function<void(const std::string& whom, const std::vector<std::string>& paths)>;
// Whom files are for that are dropped there; nothing if for nobody.
using WhomAt = std::function<std::optional<std::string>(QPoint at)>;

// For a scroll area that is its viewport. Other things that are dropped are the widget's own matter.
void takeFiles(QWidget& target, TakeFiles take, WhomAt whom);
// On a row of a list of users: the row's nick. On no row they are for `beside`.
void takeFilesForUsers(ListTree& users, TakeFiles take, std::optional<std::string> beside);

}  // namespace talvora
