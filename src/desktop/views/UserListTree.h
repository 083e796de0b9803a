#pragma once
// A list of users as a widget: by name, each with the picture of his state, and those who are not on line
// below the others. A nick can be dragged away.

#include "chat/UserList.h"
#include "desktop/ListTree.h"

namespace talvora {

ListTree* makeUserListTree(UserList& users, const QString& accessibleName, QWidget* parent);

}  // namespace talvora
