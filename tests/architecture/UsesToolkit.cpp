// Does not compile with what a core target may see; a test makes sure of that.
#include <QString>
