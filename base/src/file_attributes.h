// What a file carries beside its content: owner, permissions, extended attributes.
#pragma once

namespace brindlehum {

// Makes `to` (open, ours, with or without what its folder gave it) like `from`; 0, or the errno of a failure. What only
// the system may set (other owners, security labels) is kept where the process has the right, access control lists and
// the user's own attributes always. Where the group can't be kept, its permissions shrink to those of everyone.
int copyAttributes(int from, int to);

}  // namespace brindlehum
