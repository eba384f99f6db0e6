#include "backend/store/UserModel.h"

namespace backend {

int UserModel::subUserIndex(const QString& name) const
{
    for (int i = 0; i < subUsers.size(); ++i) {
        if (subUsers[i].name == name)
            return i;
    }
    return -1;
}

} // namespace backend
