// A tree of values as bytes and back: ours beside QDataStream over the same tree of
// QVariants, and the compressed form beside bare zlib over the same bytes.
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QVariant>
#include <cstdlib>

#include "runtime/core/list.h"
#include "runtime/core/map.h"
#include "runtime/data/bytes/compressed_streams.h"
#include "runtime/data/serialized/serializer.h"

namespace {

using kes::KesCompressedStreams;
using kes::KesList;
using kes::KesMap;
using kes::KesSerializator;
using kes::Value;

constexpr int kRecords = 2000;

std::string number(int n) { return std::to_string(n); }

// Entities of the town's directory, as the app copies and stores them.
Value entities() {
  KesList list;
  list.Initialize();
  for (int i = 0; i < kRecords; ++i) {
    KesMap hours;
    hours.Initialize();
    hours.Put("giorno", i % 7);
    hours.Put("apre", "08:30");
    hours.Put("chiude", "12:30");
    KesMap entity;
    entity.Initialize();
    entity.Put("id", i);
    entity.Put("nome", "Farmacia Comunale n. " + number(i));
    entity.Put("indirizzo", "Via Giuseppe Garibaldi, " + number(i));
    entity.Put("descrizione", "Servizio attivo tutti i giorni; la domenica è solo per le urgenze.");
    entity.Put("telefono", "0342 55" + number(i));
    entity.Put("lat", 46.1 + i);
    entity.Put("aperta", i % 3 != 0);
    entity.Put("aggiornata", std::int64_t{1510734600000} + i);
    entity.Put("orari", KesList::of({hours, Value::null()}));
    list.Add(entity);
  }
  return list;
}

QVariant entitiesForQt() {
  QVariantList list;
  for (int i = 0; i < kRecords; ++i) {
    const auto text = [](const std::string& s) { return QString::fromStdString(s); };
    QVariantMap hours{{"giorno", i % 7}, {"apre", "08:30"}, {"chiude", "12:30"}};
    list.append(QVariantMap{
        {"id", i},
        {"nome", text("Farmacia Comunale n. " + number(i))},
        {"indirizzo", text("Via Giuseppe Garibaldi, " + number(i))},
        {"descrizione", text("Servizio attivo tutti i giorni; la domenica è solo per le urgenze.")},
        {"telefono", text("0342 55" + number(i))},
        {"lat", 46.1 + i},
        {"aperta", i % 3 != 0},
        {"aggiornata", qlonglong{1510734600000} + i},
        {"orari", QVariantList{hours, QVariant()}}});
  }
  return list;
}

// Numbers alone, where a text's bytes hide nothing.
Value numbers() {
  std::vector<Value> items;
  items.reserve(100000);
  for (int i = 0; i < 100000; ++i) items.emplace_back(i);
  return KesList::of(std::move(items));
}
QVariant numbersForQt() {
  QVariantList list;
  for (int i = 0; i < 100000; ++i) list.append(i);
  return list;
}

Value tree(std::int64_t which) { return which ? numbers() : entities(); }
QVariant treeForQt(std::int64_t which) { return which ? numbersForQt() : entitiesForQt(); }

QByteArray writtenByQt(const QVariant& v) {
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out << v;
  return bytes;
}

void BM_Write(benchmark::State& state) {
  const Value v = tree(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(KesSerializator::write(v, false));
}
void BM_WriteQt(benchmark::State& state) {
  const QVariant v = treeForQt(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(writtenByQt(v));
}
void BM_Read(benchmark::State& state) {
  const auto bytes = KesSerializator::write(tree(state.range(0)), false);
  for (auto _ : state) benchmark::DoNotOptimize(KesSerializator::read(bytes, false));
}
void BM_ReadQt(benchmark::State& state) {
  const QByteArray bytes = writtenByQt(treeForQt(state.range(0)));
  for (auto _ : state) {
    QDataStream in(bytes);
    QVariant v;
    in >> v;
    if (in.status() != QDataStream::Ok) std::abort();
    benchmark::DoNotOptimize(v);
  }
}

// 0: the directory's bytes; 1: one record, where setting zlib up is what costs.
std::vector<std::uint8_t> plainBytes(std::int64_t which) {
  auto bytes = KesSerializator::write(entities(), false);
  if (which) bytes.resize(400);
  return bytes;
}

std::vector<std::uint8_t> packedByZlib(const std::vector<std::uint8_t>& bytes) {
  uLongf size = compressBound(bytes.size());
  std::vector<std::uint8_t> out(size);
  if (compress(out.data(), &size, bytes.data(), bytes.size()) != Z_OK) std::abort();
  out.resize(size);
  return out;
}

void BM_Compress(benchmark::State& state) {
  const auto bytes = plainBytes(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(KesCompressedStreams::compress(bytes, "zlib"));
}
void BM_CompressZlib(benchmark::State& state) {
  const auto bytes = plainBytes(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(packedByZlib(bytes));
}
void BM_Decompress(benchmark::State& state) {
  const auto packed = packedByZlib(plainBytes(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(KesCompressedStreams::decompress(packed, "zlib"));
}
// Knows the size beforehand, which the format does not tell.
void BM_DecompressZlib(benchmark::State& state) {
  const auto bytes = plainBytes(state.range(0));
  const auto packed = packedByZlib(bytes);
  for (auto _ : state) {
    std::vector<std::uint8_t> out(bytes.size());
    uLongf size = out.size();
    if (uncompress(out.data(), &size, packed.data(), packed.size()) != Z_OK) std::abort();
    benchmark::DoNotOptimize(out);
  }
}

BENCHMARK(BM_Write)->Name("serializer/write/ours")->DenseRange(0, 1);
BENCHMARK(BM_WriteQt)->Name("serializer/write/qdatastream")->DenseRange(0, 1);
BENCHMARK(BM_Read)->Name("serializer/read/ours")->DenseRange(0, 1);
BENCHMARK(BM_ReadQt)->Name("serializer/read/qdatastream")->DenseRange(0, 1);
BENCHMARK(BM_Compress)->Name("zlib/compress/ours")->DenseRange(0, 1);
BENCHMARK(BM_CompressZlib)->Name("zlib/compress/zlib")->DenseRange(0, 1);
BENCHMARK(BM_Decompress)->Name("zlib/decompress/ours")->DenseRange(0, 1);
BENCHMARK(BM_DecompressZlib)->Name("zlib/decompress/zlib")->DenseRange(0, 1);

}  // namespace

BENCHMARK_MAIN();
