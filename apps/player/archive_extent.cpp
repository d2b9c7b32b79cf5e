#include "player/archive_extent.h"

#include <array>

#include "protocol/server_address.h"

namespace orbelcast {

namespace {

/// Milliseconds, for each step of a request.
constexpr int kPictureTimeOut = 10'000;
constexpr std::string_view kSmallest = "0160x0120020";

/// The time of the picture at the address.
std::optional<QDateTime> TimeOfPicture(HttpRequestFactory& http, const std::string& address) {
  const auto request = http.Create();
  request->SetTimeouts(kPictureTimeOut, kPictureTimeOut, kPictureTimeOut, kPictureTimeOut);
  if (!request->Open("GET", address) || !request->Send() || request->Status() != kHttpOk) return std::nullopt;
  return TimeOfCode(request->GetResponseHeader("RC_TCR"));
}

std::string SearchAddress(const std::string& archive_address, const QDateTime& time) {
  const auto part = [&time](const char* format) { return time.toString(QLatin1String(format)).toStdString(); };
  const std::array parts{part("dd"), part("MM"), part("yyyy"), part("HH"), part("mm"), part("ss")};
  return ArchiveSearchAddress(
      archive_address,
      {.day = parts[0], .month = parts[1], .year = parts[2], .hour = parts[3], .minute = parts[4], .second = parts[5]},
      QualitySuffix(kSmallest));
}

}  // namespace

// Day and time apart: the two together would be taken for a time of this machine's zone, which may not have it.
std::optional<QDateTime> TimeOfCode(std::string_view time_code) {
  const QString code = QString::fromUtf8(time_code.data(), static_cast<qsizetype>(time_code.size()));
  const QDate date = QDate::fromString(code.left(8), QStringLiteral("yyyyMMdd"));
  const QTime time = QTime::fromString(code.mid(8), QStringLiteral("HHmmss"));
  if (!date.isValid() || !time.isValid()) return std::nullopt;
  return QDateTime(date, time, Qt::UTC);
}

ArchiveExtent AskForExtent(HttpRequestFactory& http, const std::string& archive_address,
                           const std::function<std::optional<QDateTime>()>& position) {
  const auto at = [&](ArchiveStep step) {
    return TimeOfPicture(http, ArchiveStepAddress(archive_address, step, QualitySuffix(kSmallest)));
  };
  ArchiveExtent extent;
  extent.first = at(ArchiveStep::kTop);
  // If the first has no answer, the last one would be waited for as long, for nothing.
  if (extent.first) extent.last = at(ArchiveStep::kEnd);
  if (const auto back = position()) TimeOfPicture(http, SearchAddress(archive_address, *back));
  return extent;
}

}  // namespace orbelcast
