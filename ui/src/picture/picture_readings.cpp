// Writes the cards and lists of an analysis picture.
#include "picture/picture_readings.h"

#include <QStringList>
#include <array>
#include <cmath>

namespace brindlehum::PictureReadings {
namespace {

constexpr double line = 22;

QString number(double value, int decimals) {
    const QString text = QString::number(value, 'f', decimals);
    return text.startsWith('-') && text.toDouble() == 0 ? text.mid(1) : text;
}

// Digital silence has no level.
QString level(double value, const char* unit) {
    return std::isfinite(value) ? number(value, 1) + " " + QString::fromLatin1(unit) : QStringLiteral("silent");
}

struct Card {
    QString label;
    QString value;
    QString more;
};

std::array<Card, 7> cardsOf(const MusicAnalysis& a) {
    const auto twin = a.twin();
    const auto bars = a.structure.profile.rms.size();
    return {{
        {"Tempo", number(a.grid.bpm, 2) + " BPM",
         twin ? "twin " + number(*twin, 1) : "score " + number(a.tempo.score, 2)},
        {"Meter", QString::fromStdString(a.meter()),
         a.grid.barLinesUncertain() ? QStringLiteral("bar lines uncertain")
                                    : "bar lines " + number(100 * a.grid.downbeatConfidence, 0) + " % sure"},
        {"Grid", a.grid.steady ? QStringLiteral("steady") : QString::fromStdString(a.tempo.drift).toLower(),
         "drift " + number(a.tempo.driftSpreadPct, 1) + " %, " + number(a.tempo.snappedPct, 0) + " % on onsets"},
        {"Key", QString::fromStdString(a.key.tonic + " " + a.key.mode), "confidence " + number(a.key.confidence, 2)},
        {"Loudness", level(a.loudness.integrated, "LUFS"),
         "momentary " + number(a.loudness.momentaryMax, 1) + ", short " + number(a.loudness.shortTermMax, 1)},
        {"True peak", level(a.loudness.truePeak, "dBTP"), "sample peak " + level(a.loudness.samplePeak, "dBFS")},
        {"Form", QString::number(bars) + (bars == 1 ? " bar" : " bars"),
         QString::number(a.grid.beatsPerBar) + (a.grid.beatsPerBar == 1 ? " beat a bar" : " beats a bar")},
    }};
}

QString joined(const std::vector<std::string>& words) {
    QStringList list;
    for (const std::string& word : words) { list << QString::fromStdString(word); }
    return list.join(QStringLiteral(", "));
}

void candidateLine(const PictureCanvas& canvas, const LoopCandidate& candidate, int bars, const QRectF& place) {
    const TextStyle style = canvas.body();
    const TextStyle small = canvas.small();
    const QString bar = candidate.boundary >= bars ? QStringLiteral("end") : "bar " + number(candidate.boundary + 1, 0);
    canvas.text({place.left(), place.top(), 70, line}, Qt::AlignLeft | Qt::AlignVCenter, bar, style);
    canvas.text({place.left() + 66, place.top(), 56, line}, Qt::AlignRight | Qt::AlignVCenter,
                clockText(candidate.time), style);
    const QRectF track(place.left() + 138, place.center().y() - 3, 60, 6);
    canvas.painter.setPen(Qt::NoPen);
    canvas.painter.setBrush(canvas.theme.border);
    canvas.painter.drawRoundedRect(track, 3, 3);
    canvas.painter.setBrush(canvas.theme.accent);
    if (candidate.score > 0) {
        canvas.painter.drawRoundedRect(QRectF(track.topLeft(), QSizeF(std::max(6.0, 60 * candidate.score), 6)), 3, 3);
    }
    canvas.text({track.right() + 8, place.top(), 34, line}, Qt::AlignLeft | Qt::AlignVCenter,
                number(candidate.score, 2), style);
    const double left = track.right() + 48;
    canvas.text({left, place.top(), place.right() - left, line}, Qt::AlignLeft | Qt::AlignVCenter,
                joined(candidate.reasons), small);
}

// Lists what fits above `bottom`; returns where the list ends.
double candidateList(const PictureCanvas& canvas, const QString& title, const std::vector<LoopCandidate>& list,
                     int bars, const QRectF& place, int most) {
    canvas.heading(place.topLeft(), title);
    double y = place.top() + 22;
    for (int i = 0; i < std::min(most, int(list.size())) && y + line <= place.bottom(); ++i, y += line) {
        candidateLine(canvas, list[size_t(i)], bars, {place.left(), y, place.width(), line});
    }
    if (list.empty()) {
        canvas.text({place.left(), y, place.width(), line}, Qt::AlignLeft | Qt::AlignVCenter, "none",
                    {13, canvas.theme.secondary});
        y += line;
    }
    return y;
}

double paragraph(const PictureCanvas& canvas, const QString& text, const QRectF& place) {
    const TextStyle style = canvas.body();
    // The height that the text takes at this width.
    canvas.text({}, 0, {}, style);
    const QRectF needed = canvas.painter.boundingRect(place, Qt::TextWordWrap, text);
    canvas.text(place, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, text, style);
    return place.top() + needed.height() + 4;
}

}  // namespace

void cards(const PictureCanvas& canvas, const MusicAnalysis& analysis, const QRectF& place) {
    constexpr double gap = 12;
    const auto all = cardsOf(analysis);
    const double width = (place.width() - gap * double(all.size() - 1)) / double(all.size());
    double x = place.left();
    for (const Card& card : all) {
        const QRectF plate(x, place.top(), width, place.height());
        canvas.painter.setPen(QPen(canvas.theme.border, 1));
        canvas.painter.setBrush(canvas.theme.panel);
        canvas.painter.drawRoundedRect(plate.adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
        const QRectF inner = plate.adjusted(12, 8, -8, -8);
        canvas.text({inner.left(), inner.top(), inner.width(), 14}, Qt::AlignLeft | Qt::AlignVCenter, card.label,
                    canvas.small());
        canvas.text({inner.left(), inner.top() + 15, inner.width(), 26}, Qt::AlignLeft | Qt::AlignVCenter, card.value,
                    {20, canvas.theme.text, true});
        canvas.text({inner.left(), inner.bottom() - 14, inner.width(), 15}, Qt::AlignLeft | Qt::AlignVCenter, card.more,
                    canvas.small());
        x += width + gap;
    }
}

void form(const PictureCanvas& canvas, const MusicAnalysis& analysis, const QRectF& place) {
    canvas.heading(place.topLeft(), QStringLiteral("Pins"));
    const auto bars = int(analysis.structure.profile.rms.size());
    double y = place.top() + 22;
    for (const PinMark& mark : pinMarks(analysis, canvas.theme)) {
        canvas.painter.setPen(Qt::NoPen);
        canvas.painter.setBrush(mark.color);
        canvas.painter.drawRoundedRect(QRectF(place.left(), y + line / 2 - 5, 10, 10), 2, 2);
        const TextStyle style = canvas.body();
        canvas.text({place.left() + 20, y, 110, line}, Qt::AlignLeft | Qt::AlignVCenter, mark.name, style);
        canvas.text({place.left() + 130, y, 70, line}, Qt::AlignRight | Qt::AlignVCenter, clockText(mark.seconds),
                    style);
        const QString bar = mark.boundary >= bars ? QStringLiteral("end") : "bar " + number(mark.boundary + 1, 0);
        canvas.text({place.left() + 222, y, 90, line}, Qt::AlignLeft | Qt::AlignVCenter, bar, style);
        y += line;
    }
    std::vector<std::string> tags = analysis.key.spectralTags;
    for (const std::string& tag : analysis.key.moodTags) {
        if (std::ranges::find(tags, tag) == tags.end()) { tags.push_back(tag); }
    }
    if (!tags.empty()) {
        canvas.heading({place.left(), y + 18}, QStringLiteral("Character"));
        y = paragraph(canvas, joined(tags), {place.left(), y + 40, place.width(), place.bottom() - y - 40});
    }
    std::vector<std::string> notes = analysis.structure.notes;
    if (analysis.loudness.note) { notes.push_back(*analysis.loudness.note); }
    if (notes.empty()) { return; }
    canvas.heading({place.left(), y + 14}, QStringLiteral("Notes"));
    y += 36;
    for (const std::string& note : notes) {
        if (y + 16 > place.bottom()) { break; }
        y = paragraph(canvas, QString::fromStdString(note), {place.left(), y, place.width(), place.bottom() - y});
    }
}

void candidates(const PictureCanvas& canvas, const MusicAnalysis& analysis, const QRectF& place) {
    const StructureResult& structure = analysis.structure;
    const auto bars = int(structure.profile.rms.size());
    const int most = std::max(3, int((place.height() - 62) / (2 * line)));
    const double below = candidateList(canvas, QStringLiteral("Loop ends, from the loop start"),
                                       structure.loopCandidates, bars, place, most);
    candidateList(canvas, QStringLiteral("Exits"), structure.exitCandidates, bars,
                  {place.left(), below + 18, place.width(), place.bottom() - below - 18}, most);
}

}  // namespace brindlehum::PictureReadings
