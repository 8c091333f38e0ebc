// The attributes of a file besides its content: owner, permissions, extended attributes.
#pragma once

namespace brindlehum {

// Makes the attributes of `to`, our open file, those of `from`, whatever its folder gave it; returns 0, or the errno of
// a failure. Copies what only the system may set (other owners, security labels) if the process has the right; always
// copies access lists and the user's attributes. If the group can't be kept, it gets no more rights than everyone.
int copyAttributes(int from, int to);

}  // namespace brindlehum
