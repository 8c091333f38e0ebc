// InspectorFields: the texts of the inspector for one or many files, and which of them the user has edited.
#pragma once

#include <QString>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "library/meta/metadata_changes.h"
#include "library/meta/ucs.h"

namespace brindlehum {

class InspectorFields {
public:
    struct Field {
        const char* tag;    // of SoundMeta::ixmlTags
        const char* label;  // an & precedes the letter that goes to the field
        bool severalLines = false;
    };
    static const std::array<Field, 15> fields;  // in the order to show

    // Forgets every edit.
    void load(const std::vector<SoundMeta>& files);
    // Keeps the edits.
    void loadUnderEdits(const std::vector<SoundMeta>& files);
    // Edits these values, too, but for those that are edited already.
    void edit(const MetadataChanges& changes);

    QString text(const std::string& tag) const;
    // The files differ in this field, and the user hasn't edited it.
    bool isMixed(const std::string& tag) const;
    bool isEdited(const std::string& tag) const { return edited_.contains(tag); }
    int rating() const { return rating_; }

    // Marks the field as edited; an empty text is a value, too. A CatID of the UCS list brings its category and
    // subcategory along, and the two together bring the CatID, unless it is one that the list doesn't have. While the
    // same field is typed on, what it no longer stands for is put back.
    void setText(const std::string& tag, const QString& text);
    // Takes CatID, category and subcategory from an entry that the user has chosen.
    void choose(const UCS::Entry& entry);
    // What is amiss with the CatID, for the user to know; empty if nothing is.
    QString catIDNote() const;
    // Sets the rating; the star of the current rating clears it.
    void clickStar(int star);

    bool hasEdits() const { return !edited_.empty() || ratingEdited_; }
    MetadataChanges changes() const;
    // The edits have been saved: the edited values now hold for all files.
    void saved();

private:
    // A field before another one has filled it.
    struct Before {
        std::optional<QString> text;
        bool edited = false;
    };
    void put(const std::string& tag, const QString& text);
    void follow(const std::string& tag);
    void putBack();

    std::map<std::string, QString> values_;
    std::set<std::string> mixed_;
    std::set<std::string> edited_;
    int rating_ = 0;
    bool ratingEdited_ = false;
    std::string leader_;  // the field that has filled those in `filled_`
    std::map<std::string, Before> filled_;
};

}  // namespace brindlehum
