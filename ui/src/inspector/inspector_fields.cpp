// The inspector's fields: the values of many files as one, and the edits on top.
#include "ui/inspector/inspector_fields.h"

#include <QCoreApplication>
#include <algorithm>
#include <utility>

namespace brindlehum {
namespace {

constexpr auto catIDTag = "CATID";
constexpr auto categoryTag = "CATEGORY";
constexpr auto subCategoryTag = "SUBCATEGORY";

bool isLinked(const std::string& tag) {
    return tag == catIDTag || tag == categoryTag || tag == subCategoryTag;
}

// The texts of an entry by the tags of their fields.
std::map<std::string, QString> textsOf(const UCS::Entry& entry) {
    return {{catIDTag, QString::fromStdString(entry.catID)},
            {categoryTag, QString::fromStdString(entry.category)},
            {subCategoryTag, QString::fromStdString(entry.subCategory)}};
}

}  // namespace

const std::array<InspectorFields::Field, 15> InspectorFields::fields = {
    {{"DESCRIPTION", QT_TRANSLATE_NOOP("InspectorFields", "&Description"), true},
     {"CATEGORY", QT_TRANSLATE_NOOP("InspectorFields", "Categor&y")},
     {"SUBCATEGORY", QT_TRANSLATE_NOOP("InspectorFields", "Su&bcategory")},
     {"CATID", QT_TRANSLATE_NOOP("InspectorFields", "&CatID")},
     {"FXNAME", QT_TRANSLATE_NOOP("InspectorFields", "FX &name")},
     {"KEYWORDS", QT_TRANSLATE_NOOP("InspectorFields", "&Keywords")},
     {"LIBRARY", QT_TRANSLATE_NOOP("InspectorFields", "&Library")},
     {"DESIGNER", QT_TRANSLATE_NOOP("InspectorFields", "Desi&gner")},
     {"SOURCEID", QT_TRANSLATE_NOOP("InspectorFields", "&Source ID")},
     {"MICROPHONE", QT_TRANSLATE_NOOP("InspectorFields", "&Microphone")},
     {"MICPERSPECTIVE", QT_TRANSLATE_NOOP("InspectorFields", "Mic pe&rspective")},
     {"LOCATION", QT_TRANSLATE_NOOP("InspectorFields", "Loca&tion")},
     {"NOTES", QT_TRANSLATE_NOOP("InspectorFields", "N&otes"), true},
     {"TRACKTITLE", QT_TRANSLATE_NOOP("InspectorFields", "Track t&itle")},
     {"USERCATEGORY", QT_TRANSLATE_NOOP("InspectorFields", "&User category")}}};

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
        if (!isEdited(tag)) { put(tag, QString::fromStdString(text)); }
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

void InspectorFields::put(const std::string& tag, const QString& text) {
    values_[tag] = text;
    edited_.insert(tag);
}

void InspectorFields::setText(const std::string& tag, const QString& text) {
    put(tag, text);
    if (isLinked(tag)) { follow(tag); }
}

void InspectorFields::putBack() {
    for (const auto& [tag, before] : filled_) {
        if (!before.edited) { edited_.erase(tag); }
        before.text ? void(values_[tag] = *before.text) : void(values_.erase(tag));
    }
    filled_.clear();
}

void InspectorFields::follow(const std::string& tag) {
    if (std::exchange(leader_, tag) != tag) { filled_.clear(); }
    putBack();
    const UCS& list = UCS::shared();
    const std::string catID = text(catIDTag).trimmed().toStdString();
    const UCS::Entry* entry = list.lookup(catID);
    if (tag != catIDTag) {
        if (!entry && !catID.empty()) { return; }  // the user's own CatID
        entry = list.find(text(categoryTag).toStdString(), text(subCategoryTag).toStdString());
    }
    if (!entry) { return; }
    for (const auto& [other, its] : textsOf(*entry)) {
        if (other == tag) {
            values_[tag] = its;  // as the list spells it
        } else if (text(other) != its || isMixed(other)) {
            const auto found = values_.find(other);
            filled_[other] = {found == values_.end() ? std::nullopt : std::optional(found->second), isEdited(other)};
            put(other, its);
        }
    }
}

void InspectorFields::choose(const UCS::Entry& entry) {
    leader_.clear();
    filled_.clear();
    for (const auto& [tag, text] : textsOf(entry)) { put(tag, text); }
}

QString InspectorFields::catIDNote() const {
    const std::string catID = text(catIDTag).trimmed().toStdString();
    if (catID.empty()) { return {}; }
    const UCS::Entry* entry = UCS::shared().lookup(catID);
    if (!entry) { return QCoreApplication::translate("InspectorFields", "Not in the UCS list"); }
    const auto differs = [this](const char* tag, const std::string& its) {
        const QString text = this->text(tag).trimmed();
        return !text.isEmpty() && text.compare(QString::fromStdString(its), Qt::CaseInsensitive) != 0;
    };
    if (!differs(categoryTag, entry->category) && !differs(subCategoryTag, entry->subCategory)) { return {}; }
    return QCoreApplication::translate("InspectorFields", "Stands for %1 in the UCS list")
        .arg(QString::fromStdString(entry->category + " / " + entry->subCategory));
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
    filled_.clear();
    ratingEdited_ = false;
}

}  // namespace brindlehum
