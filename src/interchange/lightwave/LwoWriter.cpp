#include "interchange/lightwave/LwoWriter.h"

#include <cstdio>

#include "interchange/ModelFile.h"
#include "interchange/lightwave/LwoObjectWriter.h"

namespace orvin {

Result writeLwo(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                const ExportOptions& options) {
    return writeModelFile(path, lwo::kWriterName, [&](std::FILE* file) {
        const auto writer = options.lwob ? lwo::makeLwobWriter() : lwo::makeLwo2Writer();
        const Result walked =
            walkExport(objects, options, lwo::kWriterName,
                       [&](const ExportPart& part) { return writer->part(part); });
        return walked == kSuccess ? writer->writeTo(file) : kFailure;
    });
}

}  // namespace orvin
