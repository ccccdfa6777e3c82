// boardd/Faults.h
// Going wrong on purpose: which log request is spoiled, and how.

#ifndef BOARDD_FAULTS_H
#define BOARDD_FAULTS_H

#include "boardd/CReply.h"

#include <mutex>

namespace mdlFaults
{

/// Reads "cut" or "cut:3" (from the third log request on). Nullopt when the kind is unknown or the number is below 1.
std::optional<std::pair<FaultKind, int>> Parse(const QString& Text);

/// The names that Parse knows, in the order of FaultKind.
QStringList Names();

/// Reply with Kind's fault in it. Silent and Close leave it alone: they happen before there is an answer.
CReply Spoil(FaultKind Kind, CReply Reply);

} // namespace mdlFaults

/// Counts log requests and says which are spoiled. Safe to use from many threads.
class CFaultPlan
{
public:
    void Set(FaultKind Kind, int From);
    /// To be called once for each log request.
    FaultKind Next();

private:
    std::mutex m_mutex;
    FaultKind m_kind = FaultKind::None;
    int m_from = 1;
    int m_requests = 0;
};

#endif
