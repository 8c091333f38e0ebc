// Which mounts a person would call a volume.
#include "platform/mounts.h"

namespace brindlehum {
namespace {

TEST(Mounts, DisksCardsAndSharesAreVolumes) {
    constexpr const char* table = R"(22 1 259:2 / / rw,relatime shared:1 - ext4 /dev/nvme0n1p2 rw
23 22 0:21 / /proc rw,nosuid - proc proc rw
24 22 0:22 / /dev/shm rw - tmpfs tmpfs rw
25 22 259:1 / /boot/efi rw shared:9 - vfat /dev/nvme0n1p1 rw
26 22 259:3 / /home rw - ext4 /dev/nvme0n1p3 rw
27 22 7:1 / /snap/core/1 ro - squashfs /dev/loop1 ro
28 22 7:2 / /mnt/image ro - iso9660 /dev/loop2 ro
29 22 8:17 / /media/ann/SFX\040Drive rw shared:3 master:2 - exfat /dev/sdb1 rw
30 22 0:50 / /mnt/team rw - nfs4 nas:/sounds rw
31 22 0:51 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw
32 22 8:33 / /run/media/ann/Card rw - vfat /dev/sdc1 rw
33 22 0:52 / /home/ann/nas rw - cifs //nas/lib rw
34 22 8:49 / /home/ann/.hidden/x rw - ext4 /dev/sdd1 rw
35 22 8:17 / /media/ann/SFX\040Drive rw - exfat /dev/sdb1 rw
36 22 0:53 / /var/lib/docker/overlay2/x rw - overlay overlay rw
37 22 8:65 / /data rw - xfs /dev/mapper/vg-data rw
38 22 8:66 /sub /etc/hosts rw - ext4 /dev/sde1 rw
39 22 short line
)";
    EXPECT_THAT(volumesIn(table), testing::ElementsAre("/media/ann/SFX Drive", "/mnt/team", "/run/media/ann/Card",
                                                       "/home/ann/nas", "/data"));
    EXPECT_TRUE(volumesIn("").empty());
}

}  // namespace
}  // namespace brindlehum
