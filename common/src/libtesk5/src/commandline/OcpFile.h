// The file of --ocp.
#pragma once

#include "reports/LineFile.h"
#include "reports/ocp/OcpStream.h"

#include <tesk5/RunContext.h>

#include <string>

namespace tesk5 {

/// Follows a run in a file. A disk that becomes full does not end the run.
class OcpFile {
public:
    /// Checks that the file can be written; a file that is there stays as it is until the run
    /// begins.
    /// \param isNamedAnew as in LineFile
    /// Failure: throws BadInput when `path` (UTF-8) is a directory or cannot be written
    OcpFile(const std::string& path, bool isNamedAnew, const RunContext& context);

    RunListener& listener() { return m_stream; }

    /// Ends the file, however the run ended; says on the context's errors when a part is lost.
    /// \return whether the file is whole
    bool end(const RunRecord& record, const RunContext& context);

private:
    LineFile m_file;
    OcpStream m_stream;
};

} // namespace tesk5
