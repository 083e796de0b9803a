#include "desktop/views/UserListTree.h"

#include "desktop/views/Pictures.h"
#include "session/PresencePanel.h"

namespace talvora {

ListTree* makeUserListTree(UserList& users, const QString& accessibleName, QWidget* parent) {
    ListModel::Look look;
    look.Columns = {accessibleName};
    look.Icon = picturesOf(Pictures::States);
    look.Sorting = ListModel::Order::ByName;
    look.Lesser = [](const ListItem& user) { return PresencePanel::IsMarkedOffline(user.Key()); };
    look.CarriesNicks = true;
    return new ListTree(users.ListView1, look, accessibleName, parent);
}

}  // namespace talvora
