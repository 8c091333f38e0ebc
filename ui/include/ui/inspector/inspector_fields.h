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

namespace brindlehum {

class InspectorFields {
public:
    struct Field {
        const char* tag;  // of SoundMeta::ixmlTags
        const char* label;
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

    // Marks the field as edited; an empty text is a value, too.
    void setText(const std::string& tag, const QString& text);
    // Sets the rating; the star of the current rating clears it.
    void clickStar(int star);

    bool hasEdits() const { return !edited_.empty() || ratingEdited_; }
    MetadataChanges changes() const;
    // The edits have been saved: the edited values now hold for all files.
    void saved();

private:
    std::map<std::string, QString> values_;
    std::set<std::string> mixed_;
    std::set<std::string> edited_;
    int rating_ = 0;
    bool ratingEdited_ = false;
};

}  // namespace brindlehum
