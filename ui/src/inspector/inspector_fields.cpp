// The inspector's fields: the values of many files as one, and the edits on top.
#include "ui/inspector/inspector_fields.h"

#include <algorithm>

namespace brindlehum {

const std::array<InspectorFields::Field, 15> InspectorFields::fields = {{{"DESCRIPTION", "Description", true},
                                                                         {"CATEGORY", "Category"},
                                                                         {"SUBCATEGORY", "Subcategory"},
                                                                         {"CATID", "CatID"},
                                                                         {"FXNAME", "FX name"},
                                                                         {"KEYWORDS", "Keywords"},
                                                                         {"LIBRARY", "Library"},
                                                                         {"DESIGNER", "Designer"},
                                                                         {"SOURCEID", "Source ID"},
                                                                         {"MICROPHONE", "Microphone"},
                                                                         {"MICPERSPECTIVE", "Mic perspective"},
                                                                         {"LOCATION", "Location"},
                                                                         {"NOTES", "Notes", true},
                                                                         {"TRACKTITLE", "Track title"},
                                                                         {"USERCATEGORY", "User category"}}};

void InspectorFields::load(const std::vector<SoundMeta>& files) {
    *this = {};
    if (files.empty()) { return; }
    const SoundMeta& first = files.front();
    for (const auto& field : fields) {
        const auto member = SoundMeta::tag(field.tag)->field;
        const bool same = std::ranges::all_of(files, [&](const auto& meta) { return meta.*member == first.*member; });
        if (same) {
            values_[field.tag] = QString::fromStdString(first.*member);
        } else {
            mixed_.insert(field.tag);
        }
    }
    const bool same = std::ranges::all_of(files, [&](const auto& meta) { return meta.rating == first.rating; });
    rating_ = same ? first.rating : 0;
}

void InspectorFields::loadUnderEdits(const std::vector<SoundMeta>& files) {
    const MetadataChanges edits = changes();
    load(files);
    edit(edits);
}

void InspectorFields::edit(const MetadataChanges& changes) {
    for (const auto& [tag, text] : changes.fields) {
        if (!isEdited(tag)) { setText(tag, QString::fromStdString(text)); }
    }
    if (!changes.rating || ratingEdited_) { return; }
    rating_ = *changes.rating;
    ratingEdited_ = true;
}

QString InspectorFields::text(const std::string& tag) const {
    const auto found = values_.find(tag);
    return found == values_.end() ? QString() : found->second;
}

bool InspectorFields::isMixed(const std::string& tag) const {
    return mixed_.contains(tag) && !edited_.contains(tag);
}

void InspectorFields::setText(const std::string& tag, const QString& text) {
    values_[tag] = text;
    edited_.insert(tag);
}

void InspectorFields::clickStar(int star) {
    rating_ = rating_ == star ? 0 : star;
    ratingEdited_ = true;
}

MetadataChanges InspectorFields::changes() const {
    MetadataChanges changes;
    for (const auto& tag : edited_) { changes.fields[tag] = text(tag).toStdString(); }
    if (ratingEdited_) { changes.rating = rating_; }
    return changes;
}

void InspectorFields::saved() {
    for (const auto& tag : edited_) { mixed_.erase(tag); }
    edited_.clear();
    ratingEdited_ = false;
}

}  // namespace brindlehum
