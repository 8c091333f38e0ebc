// The attributes of a file besides its content: owner, permissions, extended attributes.
#pragma once

namespace brindlehum {

// Gives `to`, an open file of ours, the attributes of `from`; returns 0, or the errno of a failure. Copies attributes
// that only the system may set (other owners, security labels) if the process has the right, and always copies access
// control lists and the user's own attributes. If the group can't be kept, it gets no more permissions than everyone.
int copyAttributes(int from, int to);

}  // namespace brindlehum
