// The category list and the naming scheme: what a file name says.
#include "library/meta/ucs.h"

#include "library/meta/sound_meta.h"

namespace brindlehum {
namespace {

TEST(UCS, BuiltInListIsThePublishedOne) {
    const UCS& list = UCS::shared();
    EXPECT_EQ(list.entries().size(), 752U);
    EXPECT_EQ(list.lookup("ambBIRD")->subCategory, "BIRDSONG");
    EXPECT_EQ(list.lookup("CatID"), nullptr) << "the header line is no category";
    for (const auto& [key, entry] : list.entries()) {
        EXPECT_FALSE(entry.category.empty() || entry.subCategory.empty()) << key;
    }
}

TEST(UCS, DamagedLinesAreSkippedAndLaterOnesHold) {
    const UCS list(
        "CatID,Category,SubCategory\r\n\r\nambcity , AMB\t,CITY, more\r\nX,Y\n\"A,B,C\"\nDOORWood,1,2\nDoorWOOD,3,\n");
    EXPECT_EQ(list.entries().size(), 3U);
    EXPECT_EQ(list.lookup("AMBCITY")->category, "AMB");
    EXPECT_EQ(list.lookup("DOORWood")->category, "3") << "the later line holds";
}

TEST(UCS, MatchesBeginWithTheCatIDThenNamesThenSynonyms) {
    const UCS list(
        "CatID,Category,SubCategory\nAMBBird,AMBIENCE,BIRDSONG\nANMLDog,ANIMALS,DOG\nANMLWdog,ANIMALS,DOG WILD\n"
        "BIRDSong,BIRDS,SONGBIRD\nDOGSled,SLEDS,DOGS\nTRNSbwy,TRAINS,SUBWAY\n",
        "Key,Words\nAMBIENCE,atmos background\nTRNSbwy,metro\nanimals,pet\nNONE,pet\n");
    const std::pair<const char*, const char*> cases[] = {
        {"bird", "BIRDSong AMBBird "},
        {"birds", "BIRDSong AMBBird "},
        {"birdsong", "BIRDSong AMBBird "},
        {"dog", "DOGSled ANMLDog ANMLWdog "},
        {"wild dog", "ANMLWdog "},
        {"atm", "AMBBird "},
        {"metro train", "TRNSbwy "},
        {"Pet", "ANMLDog ANMLWdog "},
        {"AMBBird - AMBIENCE / BIRDSONG", "AMBBird "},
        {"ird", ""},
        {"", "AMBBird ANMLDog ANMLWdog BIRDSong DOGSled TRNSbwy "},
    };
    for (const auto& [typed, expected] : cases) {
        std::string found;
        for (const UCS::Entry* entry : list.matches(typed)) { found += entry->catID + " "; }
        EXPECT_EQ(found, expected) << typed;
    }
    EXPECT_EQ(list.find(" ambience", "birdsong")->catID, "AMBBird");
    EXPECT_EQ(list.find("AMBIENCE", "DOG"), nullptr);
    for (const char* typed : {"traffic", "atmos forest", "sword"}) {
        EXPECT_FALSE(UCS::shared().matches(typed).empty());
    }
}

TEST(FileName, GivesCategoryNameDesignerAndSource) {
    const std::pair<const char*, const char*> cases[] = {
        // catID|category|subCategory|fxName|designer|source
        {"/a_b/DOORWood_Slam Heavy_JD_Take 3_b.wav", "DOORWood|DOORS|WOOD|Slam Heavy|JD|Take 3_b"},
        {"AMBBird_Dawn_.flac", "AMBBird|AMBIENCE|BIRDSONG|Dawn||"},
        {"AMBBird__JD__x_.v2.wav", "AMBBird|AMBIENCE|BIRDSONG||JD|_x_.v2"},
        {"ABC-1_Thing.wav", "ABC-1|||Thing||"},
        {"ABC9x-y_Thing.wav", "ABC9x-y|ABC|9x-y|Thing||"},
        {"ABCD_\xFF\xC3\xA9.wav", "ABCD|||\xEF\xBF\xBD\xC3\xA9||"},
    };
    for (const auto& [file, told] : cases) {
        const SoundMeta m = SoundMeta::fromFileName(file);
        EXPECT_EQ(m.catID + "|" + m.category + "|" + m.subCategory + "|" + m.fxName + "|" + m.designer + "|" + m.source,
                  told)
            << file;
    }
    for (const char* none :
         {"ABCDEF.wav", "Ab_Thing.wav", "ambcity_Thing.wav", "ABC-_Thing.wav", "ABC-1-2_Thing.wav", "AB-CD_Thing.wav",
          "ABC d_Thing.wav", "_ABC_Thing.wav", "ABC\xC3\x89_Thing.wav", "", "/"}) {
        EXPECT_EQ(SoundMeta::fromFileName(none), SoundMeta()) << none;
    }
}

TEST(FileName, WrittenNameHasNoSeparatorsInItsParts) {
    SoundMeta meta;
    meta.catID = "AMBBird";
    EXPECT_EQ(meta.ucsFileName(), std::nullopt);
    meta.fxName = "A_B/C";
    meta.source = "Take_3";
    EXPECT_EQ(meta.ucsFileName(), "AMBBird_A B-C_Take 3") << "a gap closes up";
    meta.designer = "J/D";
    EXPECT_EQ(meta.ucsFileName(), "AMBBird_A B-C_J-D_Take 3");
}

}  // namespace
}  // namespace brindlehum
