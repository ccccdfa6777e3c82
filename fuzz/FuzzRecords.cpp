// fuzz/FuzzRecords.cpp
// Bytes as a board's log page or a saved log file might hold them, cut into records and read into messages.

#include "board/CLogParser.h"
#include "fuzz/Demand.h"
#include "platform/text/Codepage932.h"
#include "platform/text/DateTime.h"

namespace
{

void CheckMessage(const CMessage& Message, QStringView Record)
{
    Demand(Message.ID >= 1, "a message has a number");
    Demand(Message.BBS_ID == 3 && Message.Read, "board and read flag are those that were asked for");
    Demand(text::FromSerial(Message.PostDate).isValid(), "a message has a date");
    for (const QString& part : {Message.HomePage, Message.Mail, Message.PostName}) {
        Demand(!part.contains(QStringLiteral("\r\n")), "a header is one line");
        Demand(Record.contains(part), "a header comes from the record");
    }
    Demand(Message.Body.size() <= Record.size(), "the body comes from the record");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
    const QString page = text::From932(BytesOf(Data, Size));
    CRecordCutter cutter(page);
    qsizetype total = 0;
    while (const auto record = cutter.Next()) {
        total += record->size();
        for (const bool isTwoSided : {false, true}) {
            if (const auto message = CLogParser(3, isTwoSided, true).Parse(*record))
                CheckMessage(*message, *record);
        }
    }
    Demand(total <= page.size(), "records do not overlap");
    return 0;
}
