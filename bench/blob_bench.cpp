// `select *` over a table of 1,000 pictures of 1 MB each, reading no
// picture: the data set keeps each blob's id, not its content, so the heap
// it takes stays small. Reported as the counter heap_MB beside the time, and
// beside the floor of the same select run bare.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <filesystem>
#include <iostream>

#include "benchmarks.h"
#include "mxbook/data.h"
#include "mxbook/schema.h"

namespace mxbook::bench {

namespace {

namespace fs = std::filesystem;

constexpr int pictures = 1000;
constexpr std::size_t pictureBytes = 1 << 20;

std::string cachedPictures() {
    const fs::path path = benchCacheFolder() / "pictures-1000x1MB.fdb";
    if (fs::exists(path)) return path.string();
    std::cerr << "generating " << path.string() << " (once)..." << std::endl;
    const fs::path partial = path.string() + ".partial";
    fs::remove(partial);
    {
        db::Connection connection;
        schema::createDatabase(connection, schema::Database::picture, partial.string());
        std::string picture(pictureBytes, '\0');
        for (std::size_t i = 0; i < picture.size(); ++i) picture[i] = static_cast<char>(i * 31 % 251);
        db::Batch batch(connection);
        for (int i = 0; i < pictures; ++i)
            batch.execute("insert into KARTINKI (TIP_VS, NAZVANIE, KARTINKA) values (?, ?, ?)",
                          {db::Value("Ми-8"), db::Value("Снимок " + std::to_string(i)), db::Value(picture)});
        batch.commit();
    }
    fs::rename(partial, path);
    return path.string();
}

std::size_t heapInUse() { return mallinfo2().uordblks; }

int selectAll(Fleet& pictureBase, double* heapMb = nullptr) {
    const std::size_t before = heapMb ? heapInUse() : 0;
    db::DataSet rows(pictureBase.connection, "select * from KARTINKI");
    rows.open();
    const int count = rows.recordCount();
    if (heapMb) *heapMb = static_cast<double>(heapInUse() - before) / (1 << 20);
    return count;
}

void selectStar(benchmark::State& state, Fleet& pictureBase) {
    for (auto _ : state) benchmark::DoNotOptimize(selectAll(pictureBase));
    // Measured apart: asking the allocator walks its lists, which would be timed.
    double heapMb = 0;
    selectAll(pictureBase, &heapMb);
    state.counters["heap_MB"] = heapMb;
}

void selectStarFloor(benchmark::State& state, Fleet& pictureBase) {
    RawDatabase::Statement rows(pictureBase.raw, "select * from KARTINKI");
    for (auto _ : state) benchmark::DoNotOptimize(rows.run());
}

}  // namespace

void registerBlobs() {
    static Fleet pictureBase(cachedPictures());
    benchmark::RegisterBenchmark("SelectStar1000Pictures", [](benchmark::State& s) { selectStar(s, pictureBase); });
    benchmark::RegisterBenchmark("SelectStar1000Pictures/floor",
                                 [](benchmark::State& s) { selectStarFloor(s, pictureBase); });
}

}  // namespace mxbook::bench
