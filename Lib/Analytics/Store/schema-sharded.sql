-- The statistics store on several ClickHouse servers: run this in the same database on every
-- server. Each holds a share of the events in its own "events_local"; "events" is a Distributed
-- table over the cluster "kt_shards" that the uploader inserts into (on any of the servers) and
-- that queries.sql asks, unchanged. Every server's configuration names the shards, e.g.
--
--   <remote_servers>
--       <kt_shards>
--           <shard><replica><host>store-1</host><port>9000</port></replica></shard>
--           <shard><replica><host>store-2</host><port>9000</port></replica></shard>
--       </kt_shards>
--   </remote_servers>
--
-- Events are sharded by installation: all events of one installation, and both copies of a batch
-- sent twice, land on the same shard, where FINAL collapses them; questions per installation
-- need no data from other shards.

CREATE TABLE IF NOT EXISTS events_local
(
    id UUID,
    ts UInt64,
    time DateTime('UTC') MATERIALIZED toDateTime(intDiv(ts, 1000), 'UTC'),
    date Date MATERIALIZED toDate(time),
    sid String,
    installation String,
    app String,
    version String,
    name String,
    params Nested(key String, value String)
)
ENGINE = ReplacingMergeTree
PARTITION BY toYYYYMM(date)
ORDER BY (date, name, installation, id);

-- A Distributed table cannot take MATERIALIZED columns in an insert: here time and date are
-- aliases, computed the same way.
CREATE TABLE IF NOT EXISTS events
(
    id UUID,
    ts UInt64,
    time DateTime('UTC') ALIAS toDateTime(intDiv(ts, 1000), 'UTC'),
    date Date ALIAS toDate(toDateTime(intDiv(ts, 1000), 'UTC')),
    sid String,
    installation String,
    app String,
    version String,
    name String,
    params Nested(key String, value String)
)
ENGINE = Distributed(kt_shards, currentDatabase(), events_local, cityHash64(installation));
